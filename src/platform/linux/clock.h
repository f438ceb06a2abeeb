// Clock: the local time of the system.
#pragma once

#include "platform/clock.h"

namespace tellaxis::platform {

class LinuxClock : public Clock {
 public:
  double secondsSinceMidnight() override;
  DateTime now() override;
  void sleep(std::chrono::milliseconds duration) override;
};

}  // namespace tellaxis::platform
