// Values: conversions that either give a result or leave what was there.
#include "core/ini/values.h"

#include <gtest/gtest.h>

#include "fake/locale.h"

namespace tellaxis {
namespace {

const RegionalSettings& italian() {
  static const fake::Locale locale;
  return locale.regional();
}

std::optional<std::int16_t> integer(const std::string& text) { return integerFrom(text, italian()); }

TEST(IntegerFrom, RoundsHalfToEven) {
  EXPECT_EQ(integer("0,5"), 0);
  EXPECT_EQ(integer("1,5"), 2);
  EXPECT_EQ(integer("2,5"), 2);
  EXPECT_EQ(integer("-1,5"), -2);
  EXPECT_EQ(integer("-2,5"), -2);
  EXPECT_EQ(integer("2,51"), 3);
}

TEST(IntegerFrom, FailsOutside16Bits) {
  EXPECT_EQ(integer("32767"), 32767);
  EXPECT_EQ(integer("-32768"), -32768);
  EXPECT_EQ(integer("32768"), std::nullopt);
  EXPECT_EQ(integer("-32769"), std::nullopt);
  EXPECT_EQ(integer("32767,5"), std::nullopt);
  EXPECT_EQ(integer("1e300"), std::nullopt);
}

TEST(IntegerFrom, TakesBlanksSignsSeparatorsAndExponents) {
  EXPECT_EQ(integer(" 12 "), 12);
  EXPECT_EQ(integer("+7"), 7);
  EXPECT_EQ(integer("1.000"), 1000);
  EXPECT_EQ(integer("1e2"), 100);
  EXPECT_EQ(integer("1E+2"), 100);
}

TEST(IntegerFrom, FailsForTextThatIsNoNumber) {
  for (const char* text : {"", " ", "COM1", "1x", "--1", "1 2", ",", "e5", "1e", "1,2,3"})
    EXPECT_EQ(integer(text), std::nullopt) << text;
}

TEST(IntegerFrom, TakesEveryKindOfValue) {
  EXPECT_EQ(integerFrom(Null{}, italian()), 0);
  EXPECT_EQ(integerFrom(true, italian()), -1);
  EXPECT_EQ(integerFrom(Currency{500'000}, italian()), 50);
  EXPECT_EQ(integerFrom(std::int16_t{7}, italian()), 7);
}

TEST(TruthFrom, TakesNumbersAndWords) {
  for (const char* text : {"-1", "1", "2", "0,5", "True", "TRUE", "Vero", "vero"})
    EXPECT_EQ(truthFrom(std::string(text), italian()), true) << text;
  for (const char* text : {"0", "00", "False", "Falso", "falso"})
    EXPECT_EQ(truthFrom(std::string(text), italian()), false) << text;
  for (const char* text : {"", "s\xEC", "on"}) EXPECT_EQ(truthFrom(std::string(text), italian()), std::nullopt) << text;
}

TEST(IsGreaterThanZero, ComparesNumbersAsNumbersAndTakesNamesAsGreater) {
  EXPECT_TRUE(isGreaterThanZero(Currency{10'000}, italian()));
  EXPECT_TRUE(isGreaterThanZero(std::string("LPT1:"), italian()));
  EXPECT_TRUE(isGreaterThanZero(std::string("0,5"), italian()));
  EXPECT_FALSE(isGreaterThanZero(no, italian()));
  EXPECT_FALSE(isGreaterThanZero(yes, italian()));
  EXPECT_FALSE(isGreaterThanZero(std::string("00"), italian()));
  EXPECT_FALSE(isGreaterThanZero(std::string("  "), italian()));
  EXPECT_FALSE(isGreaterThanZero(Null{}, italian()));
}

TEST(TextOf, WritesNumbersWithTheRegionsDecimalSign) {
  EXPECT_EQ(textOf(Currency{125'000}, italian()), "12,5");
  EXPECT_EQ(textOf(Currency{96'000'000}, italian()), "9600");
  EXPECT_EQ(textOf(Currency{-1}, italian()), "-0,0001");
  EXPECT_EQ(textOf(Currency{INT64_MIN}, italian()), "-922337203685477,5808");
  EXPECT_EQ(textOf(std::int16_t{-1}, italian()), "-1");
  EXPECT_EQ(textOf(false, italian()), "Falso");
  EXPECT_EQ(textOf(Null{}, italian()), "");
}

}  // namespace
}  // namespace tellaxis
