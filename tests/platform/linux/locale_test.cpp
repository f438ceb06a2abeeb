// Tests of the choice of regional settings on a Linux computer.
#include "platform/linux/locale.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <map>

#include "text/regional.h"

namespace tellaxis::platform {
namespace {

using testing::ElementsAre;
using testing::Optional;

/// Sets the variables of the environment that choose a locale, and puts the old ones back.
class Environment {
 public:
  explicit Environment(const std::map<std::string, std::string>& variables) {
    for (const char* name : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
      const char* value = std::getenv(name);
      if (value != nullptr) before_[name] = value;
      ::unsetenv(name);
    }
    for (const auto& [name, value] : variables) ::setenv(name.c_str(), value.c_str(), 1);
  }
  ~Environment() {
    for (const char* name : {"LC_ALL", "LC_NUMERIC", "LANG"}) ::unsetenv(name);
    for (const auto& [name, value] : before_) ::setenv(name.c_str(), value.c_str(), 1);
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  std::map<std::string, std::string> before_;
};

TEST(LinuxLocale, ItalianAndAmericanAreKnownByHeart) {
  const auto italian = settingsOfLocale("it_IT.UTF-8");
  ASSERT_TRUE(italian);
  EXPECT_EQ(italian->decimalSeparator, ',');
  EXPECT_EQ(italian->groupSeparator, '.');
  EXPECT_EQ(italian->trueWord, "Vero");
  EXPECT_EQ(italian->falseWord, "Falso");
  EXPECT_THAT(italian->weekdays,
              ElementsAre("domenica", "luned\xEC", "marted\xEC", "mercoled\xEC", "gioved\xEC", "venerd\xEC", "sabato"));
  const auto american = settingsOfLocale("en_US");
  ASSERT_TRUE(american);
  EXPECT_EQ(american->decimalSeparator, '.');
  EXPECT_EQ(american->groupSeparator, ',');
  EXPECT_EQ(american->trueWord, "True");
  EXPECT_EQ(american->weekdays.front(), "Sunday");
}

TEST(LinuxLocale, AnotherRegionOfAKnownLanguageUsesItsWords) {
  const auto swiss = settingsOfLocale("it_CH");
  ASSERT_TRUE(swiss);
  EXPECT_EQ(swiss->trueWord, "Vero");
  EXPECT_EQ(swiss->weekdays.at(1), "luned\xEC");
}

TEST(LinuxLocale, UnknownNamesAreRefused) {
  EXPECT_FALSE(settingsOfLocale("xx_YY"));
  EXPECT_FALSE(settingsOfLocale(""));
  EXPECT_FALSE(settingsOfLocale("../../etc/passwd"));
}

TEST(LinuxLocale, TheFirstVariableThatIsSetDecides) {
  const Environment environment({{"LC_ALL", ""}, {"LC_NUMERIC", "en_US.UTF-8"}, {"LANG", "it_IT.UTF-8"}});
  EXPECT_EQ(settingsOfEnvironment().decimalSeparator, '.');
}

TEST(LinuxLocale, WithoutAChoiceItIsItalian) {
  using Variables = std::map<std::string, std::string>;
  for (const Variables& variables : {Variables{}, Variables{{"LC_ALL", "C"}}, Variables{{"LANG", "C.UTF-8"}},
                                     Variables{{"LC_ALL", "POSIX"}, {"LANG", "en_US"}}, Variables{{"LANG", "xx_YY"}}}) {
    const Environment environment(variables);
    EXPECT_EQ(settingsOfEnvironment().trueWord, "Vero");
  }
}

TEST(LinuxLocale, ReadsCurrencyByTheRegion) {
  const LinuxLocale italian(italianSettings());
  EXPECT_THAT(italian.currency("1.234,5"), Optional(12'345'000));
  EXPECT_EQ(italian.currency("1,5,0"), std::nullopt);
}

}  // namespace
}  // namespace tellaxis::platform
