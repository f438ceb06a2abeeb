// Write all: short writes go on, and devices that are not ready are waited for.
#include "platform/linux/kernel/write_all.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/kernel/uninterrupted.h"

namespace tellaxis::platform {

namespace {

constexpr int patienceWithDevices = 2000;  // milliseconds

bool waitUntilWritable(const Descriptor& file) {
  pollfd waiting{.fd = file.number(), .events = POLLOUT, .revents = 0};
  if (untilUninterrupted([&] { return ::poll(&waiting, 1, patienceWithDevices); }) > 0) return true;
  errno = EAGAIN;
  return false;
}

}  // namespace

bool writeAll(const Descriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = untilUninterrupted([&] { return ::write(file.number(), bytes.data(), bytes.size()); });
    if (written >= 0)
      bytes.remove_prefix(static_cast<std::size_t>(written));
    else if (errno != EAGAIN || !waitUntilWritable(file))
      return false;
  }
  return true;
}

}  // namespace tellaxis::platform
