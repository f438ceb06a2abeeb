// Timed write: poll, then write what is taken.
#include "platform/linux/kernel/timed_write.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>

namespace tellaxis::platform {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

bool waitUntil(const Descriptor& descriptor, short events, steady_clock::time_point deadline) {
  for (;;) {
    const auto left = std::max(milliseconds(0), std::chrono::ceil<milliseconds>(deadline - steady_clock::now()));
    pollfd entry{.fd = descriptor.number(), .events = events, .revents = 0};
    const int ready = ::poll(&entry, 1, static_cast<int>(left.count()));
    if (ready > 0) return true;
    if (ready == 0) errno = EAGAIN;
    if (errno != EINTR) return false;
  }
}

bool writeAll(const Descriptor& descriptor, std::string_view bytes, milliseconds timeout) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor.number(), bytes.data(), bytes.size());
    const bool mayWait = written >= 0 || errno == EAGAIN || errno == EINTR;
    if (written > 0)
      bytes.remove_prefix(static_cast<std::size_t>(written));
    else if (!mayWait || !waitUntil(descriptor, POLLOUT, steady_clock::now() + timeout))
      return false;
  }
  return true;
}

}  // namespace tellaxis::platform
