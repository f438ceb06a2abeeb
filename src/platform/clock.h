// Clock: the time of day, the calendar, durations and the only way to wait.
#pragma once

#include <chrono>

namespace tellaxis::platform {

/// Local calendar date and time to the minute.
struct DateTime {
  int year = 0;
  int month = 0;    ///< 1 to 12
  int day = 0;      ///< 1 to 31
  int weekday = 0;  ///< 0 is Sunday
  int hour = 0;
  int minute = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;

  /// Local seconds since midnight with their fraction; starts again from 0 at midnight.
  virtual double secondsSinceMidnight() = 0;

  virtual DateTime now() = 0;

  /// Time since 1970 began, in UTC.
  virtual std::chrono::milliseconds sinceEpoch() = 0;

  /// Time since some moment before the program began; nobody sets this one.
  virtual std::chrono::microseconds steady() = 0;

  /// Gives the processor up for about `duration`.
  virtual void sleep(std::chrono::milliseconds duration) = 0;
};

}  // namespace tellaxis::platform
