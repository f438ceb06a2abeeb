// Clock of Windows: GetLocalTime, and waiting that answers what is sent to the window.
#include "platform/windows/clock.h"

#include <windows.h>

#include "platform/windows/kernel/message_wait.h"

namespace tellaxis::platform {

double WindowsClock::secondsSinceMidnight() {
  SYSTEMTIME time;
  GetLocalTime(&time);
  return time.wHour * 3600 + time.wMinute * 60 + time.wSecond + time.wMilliseconds / 1000.0;
}

DateTime WindowsClock::now() {
  SYSTEMTIME time;
  GetLocalTime(&time);
  return {.year = time.wYear,
          .month = time.wMonth,
          .day = time.wDay,
          .weekday = time.wDayOfWeek,
          .hour = time.wHour,
          .minute = time.wMinute};
}

std::chrono::milliseconds WindowsClock::sinceEpoch() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch());
}

std::chrono::microseconds WindowsClock::steady() {
  using namespace std::chrono;
  return duration_cast<microseconds>(steady_clock::now().time_since_epoch());
}

void WindowsClock::sleep(std::chrono::milliseconds duration) {
  if (duration.count() > 0) waitForMessages(nullptr, static_cast<DWORD>(duration.count()));
}

}  // namespace tellaxis::platform
