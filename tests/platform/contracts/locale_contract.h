// Locale contract: what every implementation of locale.h owes its callers in Italy.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>

#include "platform/host.h"
#include "platform/locale.h"

namespace tellaxis::test {

/// A Computer has host(), and Italian regional settings.
template <class Computer>
struct LocaleContract : testing::Test {
  Computer computer;
  const platform::Locale& locale = computer.host().locale;
};

TYPED_TEST_SUITE_P(LocaleContract);

TYPED_TEST_P(LocaleContract, SignsAndWordsAreItalian) {
  const RegionalSettings& regional = this->locale.regional();
  EXPECT_EQ(regional.decimalSeparator, ',');
  EXPECT_EQ(regional.groupSeparator, '.');
  EXPECT_EQ(regional.trueWord, "Vero");
  EXPECT_EQ(regional.falseWord, "Falso");
  EXPECT_EQ(regional.weekdays.at(0), "domenica");
  EXPECT_EQ(regional.weekdays.at(1), "luned\xEC");
  EXPECT_EQ(regional.weekdays.at(6), "sabato");
}

// Beyond the fourth decimal and at the end of the range Windows has its own rules.
TYPED_TEST_P(LocaleContract, CurrencyIsReadInTenThousandths) {
  EXPECT_EQ(this->locale.currency("12,5"), 125'000);
  EXPECT_EQ(this->locale.currency("1.234,56"), 12'345'600);
  EXPECT_EQ(this->locale.currency(" -7 "), -70'000);
}

TYPED_TEST_P(LocaleContract, WhatIsNoNumberOrTooLargeIsNothing) {
  for (const char* text : {"", " ", "dodici", "1,2,3", "12x", "922337203685477,5808"})
    EXPECT_EQ(this->locale.currency(text), std::nullopt) << text;
}

REGISTER_TYPED_TEST_SUITE_P(LocaleContract, SignsAndWordsAreItalian, CurrencyIsReadInTenThousandths,
                            WhatIsNoNumberOrTooLargeIsNothing);

}  // namespace tellaxis::test
