// Tests of the conversion between code page 1252 and Unicode.
#include "text/code_page.h"

#include <gmock/gmock.h>

namespace tellaxis::platform {
namespace {

TEST(CodePage, EveryByteGoesToUnicodeAndBack) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  EXPECT_EQ(codePageFromUtf8(utf8FromCodePage(bytes)), bytes);
}

TEST(CodePage, KnowsTheEuroSignAndAccents) {
  EXPECT_EQ(utf8FromCodePage("\x80 5,00 perch\xE9"), "€ 5,00 perché");
  EXPECT_EQ(codePageFromUtf8("§D à “qui”"),
            "\xA7"
            "D \xE0 \x93qui\x94");
}

TEST(CodePage, UndefinedBytesAreControlCharactersOfTheirNumber) { EXPECT_EQ(utf8FromCodePage("\x81"), "\xC2\x81"); }

TEST(CodePage, RefusesWhatItLacksAndWhatIsNoUtf8) {
  for (const char* text : {"日", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80", "a\xFF", "😀"})
    EXPECT_EQ(codePageFromUtf8(text), std::nullopt) << text;
}

TEST(CodePage, NearestPutsAQuestionMarkForTheRest) {
  EXPECT_EQ(nearestCodePage("a日b"), "a?b");
  EXPECT_EQ(nearestCodePage("\xC3("), "?(");
}

}  // namespace
}  // namespace tellaxis::platform
