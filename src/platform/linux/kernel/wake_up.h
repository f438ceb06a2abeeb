// Wake-up: ends the sleep of a thread that polls.
#pragma once

#include <sys/eventfd.h>

#include <cerrno>
#include <utility>

#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

/// A descriptor that becomes readable when somebody wakes its owner; none where the system has no more.
class WakeUp {
 public:
  static WakeUp make() { return WakeUp(Descriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))); }

  WakeUp() = default;

  explicit operator bool() const { return static_cast<bool>(descriptor_); }
  int number() const { return descriptor_.number(); }

  /// A thread that is not woken would sleep for ever, and with it whoever waits for its end: tried until it is done. (A
  /// counter that is full says EAGAIN, and has woken the thread already.)
  void wake() const {
    while (descriptor_ && ::eventfd_write(number(), 1) != 0 && errno != EAGAIN && errno != EBADF) continue;
  }

  /// Forgets what has woken the owner, who may sleep again.
  void forget() const {
    eventfd_t count = 0;
    ::eventfd_read(number(), &count);
  }

 private:
  explicit WakeUp(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}

  Descriptor descriptor_;
};

}  // namespace tellaxis::platform
