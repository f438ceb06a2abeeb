// Tests of bar codes: the modules of an EAN-13.
#include "platform/printing/pages/bar_code.h"

#include <gmock/gmock.h>

#include <string>

namespace tellaxis::platform {
namespace {

using testing::IsEmpty;

std::string drawn(std::string_view digits) {
  std::string bars;
  for (const bool bar : ean13Modules(digits)) bars += bar ? '1' : '0';
  return bars;
}

TEST(BarCode, TheModulesAreThoseOfTheStandard) {
  EXPECT_EQ(drawn("4006381333931"),
            "101"
            "000110101001110101111011110100010010110011"  // 0 0 6 3 8 1, the parities of 4
            "01010"
            "100001010000101000010111010010000101100110"  // 3 3 3 9 3 1
            "101");
}

TEST(BarCode, TheFirstDigitIsToldByTheOthersAlone) {
  std::string zero = drawn("0001234567890");
  for (char first = '1'; first <= '9'; ++first) {
    const std::string other = drawn(std::string(1, first) + "001234567890");
    EXPECT_NE(other.substr(0, 45), zero.substr(0, 45)) << first;
    EXPECT_EQ(other.substr(45), zero.substr(45)) << first;
    EXPECT_EQ(other.substr(0, 10), zero.substr(0, 10)) << first << ": the second digit keeps its form";
  }
}

TEST(BarCode, WhatIsNotThirteenDigitsHasNoBars) {
  for (const char* wrong : {"", "400638133393", "40063813339311", "400638133393A", "400638133393\xE9"})
    EXPECT_THAT(ean13Modules(wrong), IsEmpty()) << wrong;
}

}  // namespace
}  // namespace tellaxis::platform
