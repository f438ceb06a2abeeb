// Clock: the system's clocks.
#include "platform/linux/clock.h"

#include <cerrno>
#include <ctime>

namespace tellaxis::platform {

namespace {

struct LocalTime {
  tm calendar{};
  long nanoseconds = 0;
};

LocalTime localTime() {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  LocalTime local{.nanoseconds = now.tv_nsec};
  ::localtime_r(&now.tv_sec, &local.calendar);
  return local;
}

}  // namespace

double LinuxClock::secondsSinceMidnight() {
  const LocalTime local = localTime();
  const int seconds = (local.calendar.tm_hour * 60 + local.calendar.tm_min) * 60 + local.calendar.tm_sec;
  return seconds + static_cast<double>(local.nanoseconds) / 1e9;
}

DateTime LinuxClock::now() {
  const tm calendar = localTime().calendar;
  return {.year = calendar.tm_year + 1900,
          .month = calendar.tm_mon + 1,
          .day = calendar.tm_mday,
          .weekday = calendar.tm_wday,
          .hour = calendar.tm_hour,
          .minute = calendar.tm_min};
}

std::chrono::milliseconds LinuxClock::sinceEpoch() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch());
}

std::chrono::microseconds LinuxClock::steady() {
  using namespace std::chrono;
  return duration_cast<microseconds>(steady_clock::now().time_since_epoch());
}

void LinuxClock::sleep(std::chrono::milliseconds duration) {
  if (duration <= std::chrono::milliseconds::zero()) return;
  timespec end{};
  ::clock_gettime(CLOCK_MONOTONIC, &end);
  const auto nanoseconds = end.tv_nsec + duration.count() % 1000 * 1'000'000;
  end.tv_sec += duration.count() / 1000 + nanoseconds / 1'000'000'000;
  end.tv_nsec = nanoseconds % 1'000'000'000;
  while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) {
  }
}

}  // namespace tellaxis::platform
