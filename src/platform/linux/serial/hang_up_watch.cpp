// Hang-up watch: a thread that sleeps until the device hangs up or the watch ends.
#include "platform/linux/serial/hang_up_watch.h"

#include <poll.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace tellaxis::platform {

HangUpWatch::HangUpWatch(int descriptor, std::function<void()> gone) : stop_(WakeUp::make()) {
  if (!stop_) return;
  const auto watch = [descriptor, stop = stop_.number(), gone = std::move(gone)] {
    // No events are asked for: hang-ups and errors are always told.
    pollfd watched[] = {{.fd = descriptor, .events = 0, .revents = 0}, {.fd = stop, .events = POLLIN, .revents = 0}};
    while (::poll(watched, 2, -1) < 0 && errno == EINTR) continue;
    if (watched[0].revents != 0) gone();
  };
  try {
    thread_ = std::jthread(watch);
  } catch (const std::system_error&) {
    // The line works without a watch.
  }
}

HangUpWatch::~HangUpWatch() {
  if (thread_.joinable()) stop_.wake();
}

}  // namespace tellaxis::platform
