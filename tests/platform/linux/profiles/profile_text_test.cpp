// Profile text: where keys are found, and which bytes an edit touches.
#include "platform/linux/profiles/profile_text.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace tellaxis::platform {
namespace {

std::string written(std::string_view text, std::string_view section, std::optional<std::string_view> key,
                    std::optional<std::string_view> value) {
  std::string result(text);
  if (const auto edit = editFor(text, section, key, value))
    result.replace(edit->begin, edit->end - edit->begin, edit->replacement);
  return result;
}

TEST(ProfileText, TrimsBlanksAndTabsAroundNames) {
  EXPECT_EQ(findValue(" [ A ] \r\n\t k \t= v \t\r\n", "a", "K"), "v");
  EXPECT_EQ(findValue("[A]\r\nk=v\r\n", " A ", "\tk "), "v");
}

TEST(ProfileText, EndsLinesAtEveryKindOfLineEnd) {
  for (const std::string_view end : {"\r\n", "\n", "\r"}) {
    std::string text;
    for (const char* line : {"[A]", "k=1", "", "[B]", "k=2"}) text.append(line).append(end);
    EXPECT_EQ(findValue(text, "A", "k"), "1");
    EXPECT_EQ(findValue(text, "B", "k"), "2");
  }
}

TEST(ProfileText, TakesNoCommentForAKey) {
  EXPECT_EQ(findValue("[A]\r\n;k=1\r\n  ;k=2\r\n", "A", ";k"), std::nullopt);
  EXPECT_EQ(listKeys("[A]\r\n;k=1\r\n#k=2\r\nword\r\n", "A"), std::string("#k\0", 3));
}

TEST(ProfileText, EndsASectionNameAtTheFirstBracket) {
  EXPECT_EQ(findValue("[A]B]\r\nk=v\r\n", "A", "k"), "v");
  EXPECT_EQ(findValue("[A\r\nk=v\r\n", "A", "k"), std::nullopt);
}

TEST(ProfileText, SeesNoKeyBeforeTheFirstSection) { EXPECT_EQ(findValue("k=v\r\n[A]\r\n", "", "k"), std::nullopt); }

TEST(ProfileText, AddsAKeyBeforeTrailingCommentsAndBlankLines) {
  EXPECT_EQ(written("[A]\r\n; c1\r\nk=v\r\n; c2\r\n\r\n[B]\r\nx=1\r\n", "A", "n", "w"),
            "[A]\r\n; c1\r\nk=v\r\nn=w\r\n; c2\r\n\r\n[B]\r\nx=1\r\n");
  EXPECT_EQ(written("[A]\r\n; c\r\n\r\n[B]\r\n", "A", "n", "w"), "[A]\r\nn=w\r\n; c\r\n\r\n[B]\r\n");
}

TEST(ProfileText, AddsASectionBehindEverythingElse) {
  EXPECT_EQ(written("[A]\r\nk=v\r\n\r\n; end", "B", "n", "w"), "[A]\r\nk=v\r\n\r\n; end\r\n[B]\r\nn=w\r\n");
}

TEST(ProfileText, ChangesOneLineAndKeepsTheKeysSpelling) {
  EXPECT_EQ(written("; c\n[A]\n K y = old ; x\nz=1\n", "a", "k Y", "new"), "; c\n[A]\nK y=new\r\nz=1\n");
}

TEST(ProfileText, LeavesAValueThatIsThereAlready) {
  EXPECT_FALSE(editFor("[A]\n  k =  v  ", "a", "K", "v"));
  EXPECT_FALSE(editFor("[A]\r\nk=\"v\"\r\n", "A", "k", "\"v\""));
  EXPECT_TRUE(editFor("[A]\r\nk=\"v\"\r\n", "A", "k", "v"));
  EXPECT_FALSE(editFor("[A]\r\n", "A", "k", std::nullopt));
  EXPECT_FALSE(editFor("[A]\r\n", "B", std::nullopt, std::nullopt));
}

TEST(ProfileText, DeletesASectionUpToTheNextHeader) {
  EXPECT_EQ(written("; t\r\n[A]\r\n; c\r\nk=v\r\n\r\n[B]\r\nx=1\r\n[A]\r\ny=1\r\n", "a", std::nullopt, std::nullopt),
            "; t\r\n[B]\r\nx=1\r\n[A]\r\ny=1\r\n");
}

TEST(ProfileText, KeepsNulsOfTheFile) {
  const std::string text("Data \0 first\r\n[A]\r\nk=a\0b\r\n", 26);
  EXPECT_EQ(findValue(text, "A", "k"), std::string_view("a\0b", 3));
  EXPECT_EQ(written(text, "A", "n", "w"), text + "n=w\r\n");
}

TEST(ProfileText, SearchesATextOfLoneCarriageReturnsInOnePass) {
  std::string text;
  text.resize(10'000'000, '\r');
  text += "[A]\rk=v\r";
  EXPECT_EQ(findValue(text, "A", "k"), "v");
}

/// Texts made of the pieces that matter, and of random bytes.
class RandomText {
 public:
  std::string text() { return joined(40); }
  std::string name() { return pick(names_); }
  std::string value() { return pick(values_); }

 private:
  std::string joined(unsigned mostPieces) {
    std::string result;
    for (unsigned count = random() % mostPieces; count > 0; --count)
      result += random() % 4 == 0 ? std::string(1, static_cast<char>(random())) : pick(pieces_);
    return result;
  }
  const std::string& pick(const std::vector<std::string>& from) { return from[random() % from.size()]; }
  unsigned random() { return static_cast<unsigned>(engine_()); }

  std::mt19937 engine_{20030714};
  const std::vector<std::string> names_{"A", "a", "B", "key", "KEY", "Last Key", "\xE8", " pad "};
  const std::vector<std::string> values_{"", "v", "\"v\"", "'", "a=b", "; c", "[x]", "  pad ", std::string(300, 'x')};
  const std::vector<std::string> pieces_{"[A]",     "[a]\r\n", "[B]\n", "key=", "KEY = 1", "Last Key=x\r\n",
                                         "; c\r\n", "\r\n",    "\r\n",  "\n",   "\r",      "=",
                                         "]",       "[",       "\"",    " ",    "\t",      ";"};
};

/// True when the bytes that `edit` replaces are none or one whole line.
bool replacesOneLineAtMost(std::string_view text, const TextEdit& edit) {
  std::string_view line = text.substr(edit.begin, edit.end - edit.begin);
  const bool beginsLine = edit.begin == 0 || text[edit.begin - 1] == '\n' || text[edit.begin - 1] == '\r';
  for (const char end : {'\n', '\r'})
    if (line.ends_with(end)) line.remove_suffix(1);
  return (beginsLine || edit.begin == edit.end) && line.find_first_of("\r\n") == std::string_view::npos;
}

TEST(ProfileText, GivesBackWhatWasWrittenAndTouchesNothingElse) {
  RandomText random;
  for (int round = 0; round < 20000; ++round) {
    const std::string text = random.text(), section = random.name(), key = random.name(), value = random.value();
    const auto edit = editFor(text, section, key, value);
    const std::string after = written(text, section, key, value);
    ASSERT_EQ(findValue(after, section, key), findValue("[s]\r\nk=" + value, "s", "k")) << round;
    ASSERT_FALSE(editFor(after, section, key, value)) << round;
    if (!edit) continue;
    ASSERT_TRUE(replacesOneLineAtMost(text, *edit)) << round;
    ASSERT_EQ(edit->end > edit->begin, findValue(text, section, key).has_value()) << round;
    const std::string otherSection = random.name(), otherKey = random.name();
    const bool same = !editFor("[" + section + "]\n" + key + "=", otherSection, otherKey, "");
    if (same) continue;
    ASSERT_EQ(findValue(after, otherSection, otherKey), findValue(text, otherSection, otherKey)) << round;
  }
}

TEST(ProfileText, DeletesOneLineOfAnyText) {
  RandomText random;
  for (int round = 0; round < 20000; ++round) {
    const std::string text = random.text(), section = random.name(), key = random.name();
    const auto edit = editFor(text, section, key, std::nullopt);
    ASSERT_EQ(edit.has_value(), findValue(text, section, key).has_value()) << round;
    if (!edit) continue;
    ASSERT_EQ(edit->replacement, "");
    ASSERT_LT(edit->begin, edit->end);
    ASSERT_TRUE(replacesOneLineAtMost(text, *edit)) << round;
  }
}

}  // namespace
}  // namespace tellaxis::platform
