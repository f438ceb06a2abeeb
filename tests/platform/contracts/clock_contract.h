// Clock contract: what every implementation of clock.h owes its callers.
#pragma once

#include <gtest/gtest.h>

#include <chrono>

#include "platform/clock.h"
#include "platform/host.h"

namespace tellaxis::test {

/// A Computer has host().
template <class Computer>
struct ClockContract : testing::Test {
  static constexpr double day = 86'400;

  Computer computer;
  platform::Clock& clock = computer.host().clock;

  /// Seconds from one look at the clock to another, over midnight too.
  /// Seconds from one look at the clock to the next; a clock that is set right in between may go back a little.
  static double between(double first, double second) {
    if (second < first && first - second < 1) return 0;
    return second < first ? second + day - first : second - first;
  }
};

TYPED_TEST_SUITE_P(ClockContract);

TYPED_TEST_P(ClockContract, TheTimeOfDayIsThatOfTheCalendar) {
  const auto matches = [this] {
    const double seconds = this->clock.secondsSinceMidnight();
    const platform::DateTime now = this->clock.now();
    return static_cast<int>(seconds) / 60 == now.hour * 60 + now.minute;
  };
  EXPECT_TRUE(matches() || matches()) << "the minute may end between two looks, but not twice";
  const double seconds = this->clock.secondsSinceMidnight();
  EXPECT_GE(seconds, 0);
  EXPECT_LT(seconds, this->day);
}

TYPED_TEST_P(ClockContract, TheWeekdayIsThatOfTheDate) {
  const platform::DateTime now = this->clock.now();
  const std::chrono::year_month_day date{std::chrono::year(now.year), std::chrono::month(now.month),
                                         std::chrono::day(now.day)};
  ASSERT_TRUE(date.ok());
  EXPECT_EQ(now.weekday, static_cast<int>(std::chrono::weekday(date).c_encoding()));
}

TYPED_TEST_P(ClockContract, ASleepLastsAsLongAsAsked) {
  const double start = this->clock.secondsSinceMidnight();
  this->clock.sleep(std::chrono::milliseconds(30));
  // The system's timer may end a sleep a tick early.
  EXPECT_GE(this->between(start, this->clock.secondsSinceMidnight()), 0.014);
}

TYPED_TEST_P(ClockContract, NoSleepIsOverAtOnce) {
  const double start = this->clock.secondsSinceMidnight();
  for (int i = 0; i < 20; ++i) this->clock.sleep(std::chrono::milliseconds(0));
  EXPECT_LT(this->between(start, this->clock.secondsSinceMidnight()), 5);
}

TYPED_TEST_P(ClockContract, TheSteadyTimeGoesOnWithASleep) {
  const auto start = this->clock.steady();
  this->clock.sleep(std::chrono::milliseconds(30));
  EXPECT_GE(this->clock.steady() - start, std::chrono::milliseconds(14));
}

TYPED_TEST_P(ClockContract, TheTimeSinceTheEpochIsThatOfTheCalendarButForTheZone) {
  using namespace std::chrono;
  const platform::DateTime now = this->clock.now();
  const sys_days date = year(now.year) / now.month / now.day;
  const auto local = date.time_since_epoch() + hours(now.hour) + minutes(now.minute);
  // No zone is further away from UTC than 14 hours.
  EXPECT_LT(abs(this->clock.sinceEpoch() - local), hours(15));
}

REGISTER_TYPED_TEST_SUITE_P(ClockContract, TheTimeOfDayIsThatOfTheCalendar, TheWeekdayIsThatOfTheDate,
                            ASleepLastsAsLongAsAsked, NoSleepIsOverAtOnce, TheSteadyTimeGoesOnWithASleep,
                            TheTimeSinceTheEpochIsThatOfTheCalendarButForTheZone);

}  // namespace tellaxis::test
