// Clock of Windows: local time and sleeping.
#pragma once

#include "platform/clock.h"

namespace tellaxis::platform {

class WindowsClock : public Clock {
 public:
  double secondsSinceMidnight() override;
  DateTime now() override;
  std::chrono::milliseconds sinceEpoch() override;
  std::chrono::microseconds steady() override;
  void sleep(std::chrono::milliseconds duration) override;
};

}  // namespace tellaxis::platform
