// Hang-up watch: notices at once that a device went away, whatever the program is doing.
#pragma once

#include <functional>
#include <thread>

#include "platform/linux/kernel/wake_up.h"

namespace tellaxis::platform {

/// Watches from a thread of its own and calls `gone` there, once, when the device behind the descriptor has hung up.
/// Destroying the watch waits for a call that is under way.
class HangUpWatch {
 public:
  HangUpWatch(int descriptor, std::function<void()> gone);
  ~HangUpWatch();
  HangUpWatch(const HangUpWatch&) = delete;
  HangUpWatch& operator=(const HangUpWatch&) = delete;

 private:
  WakeUp stop_;
  std::jthread thread_;
};

}  // namespace tellaxis::platform
