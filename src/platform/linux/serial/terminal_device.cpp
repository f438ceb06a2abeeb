// Terminal device: exclusive opening, writing with a time limit, and a close that does not wait.
#include "platform/linux/serial/terminal_device.h"

#include <fcntl.h>
#include <linux/serial.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <termios.h>

#include <cerrno>
#include <thread>
#include <utility>

#include "platform/linux/serial/line_settings.h"

namespace tellaxis::platform {

namespace {

using namespace std::chrono_literals;

/// Between two looks at what the device has sent: while its buffer is full, and while it is emptied.
constexpr int fullPause = 50;  // milliseconds
constexpr auto drainPause = 1ms;

/// The system gives pseudo terminals these major numbers.
bool isPseudoTerminal(int descriptor) {
  constexpr unsigned first = 136;
  constexpr unsigned last = 143;
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && major(status.st_rdev) >= first && major(status.st_rdev) <= last;
}

/// Locks out other programs: by a lock, and by the device's own mark, which does not bind a privileged user. A pseudo
/// terminal, a line over the network as a rule, keeps that mark when its program is killed, and would lock out the
/// next start.
bool makeExclusive(int descriptor) {
  if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0)
    return isPseudoTerminal(descriptor) || ::ioctl(descriptor, TIOCEXCL) == 0;
  if (errno == EWOULDBLOCK) errno = EBUSY;
  return false;
}

/// The close of a device that holds on to its output otherwise takes up to 30 s. The system may refuse.
void closeWithoutWaiting(int descriptor) {
  serial_struct details = {};
  if (::ioctl(descriptor, TIOCGSERIAL, &details) != 0) return;
  details.closing_wait = ASYNC_CLOSING_WAIT_NONE;
  ::ioctl(descriptor, TIOCSSERIAL, &details);
}

/// Throws away what the device does not send.
WriteResult giveUp(int descriptor) {
  ::tcflush(descriptor, TCOFLUSH);
  closeWithoutWaiting(descriptor);
  return WriteResult::stuck;
}

bool hasHungUp(int descriptor) {
  pollfd device{.fd = descriptor, .events = 0, .revents = 0};
  return ::poll(&device, 1, 0) > 0;
}

/// Bytes in the system's buffer; below 0 when the device went away. A question that fails while the device is there
/// says nothing of the bytes, and is asked once more: a device taken for gone is opened anew, and gets the same bytes
/// again.
int bytesWaiting(int descriptor) {
  int waiting = 0;
  if (::ioctl(descriptor, TIOCOUTQ, &waiting) == 0) return waiting;
  if (hasHungUp(descriptor)) return -1;
  return ::ioctl(descriptor, TIOCOUTQ, &waiting) == 0 ? waiting : 0;
}

/// Knows for how long a device has sent nothing.
class Progress {
 public:
  Progress(int descriptor, std::chrono::milliseconds limit) : descriptor_(descriptor), limit_(limit) { renew(); }

  void renew() {
    waiting_ = bytesWaiting(descriptor_);
    last_ = std::chrono::steady_clock::now();
  }

  bool hasStopped() {
    const int before = std::exchange(waiting_, bytesWaiting(descriptor_));
    if (waiting_ < before) last_ = std::chrono::steady_clock::now();
    return std::chrono::steady_clock::now() - last_ >= limit_;
  }

 private:
  int descriptor_;
  std::chrono::milliseconds limit_;
  int waiting_ = 0;
  std::chrono::steady_clock::time_point last_;
};

}  // namespace

std::unique_ptr<TerminalDevice> TerminalDevice::open(const std::string& path, const LineSettings& settings) {
  Descriptor descriptor(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (!descriptor || ::isatty(descriptor.number()) == 0 || !makeExclusive(descriptor.number())) return nullptr;
  auto device = std::make_unique<TerminalDevice>(std::move(descriptor));
  return device->configure(settings) ? std::move(device) : nullptr;
}

TerminalDevice::~TerminalDevice() {
  const int error = errno;
  ::ioctl(descriptor(), TIOCNXCL);
  errno = error;
}

bool TerminalDevice::configure(const LineSettings& settings) { return applyLineSettings(descriptor(), settings); }

WriteResult TerminalDevice::write(std::string_view bytes, std::chrono::milliseconds limit) {
  Progress progress(descriptor(), limit);
  while (!bytes.empty()) {
    const ssize_t taken = ::write(descriptor(), bytes.data(), bytes.size());
    if (taken > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(taken));
      progress.renew();
      continue;
    }
    if (taken < 0 && errno == EINTR) continue;
    if (taken < 0 && errno != EAGAIN) return WriteResult::gone;
    if (progress.hasStopped()) return giveUp(descriptor());
    pollfd writable{.fd = descriptor(), .events = POLLOUT, .revents = 0};
    ::poll(&writable, 1, fullPause);
  }
  return drain(limit);
}

WriteResult TerminalDevice::drain(std::chrono::milliseconds limit) {
  Progress progress(descriptor(), limit);
  for (int waiting = bytesWaiting(descriptor()); waiting != 0; waiting = bytesWaiting(descriptor())) {
    if (waiting < 0) return WriteResult::gone;
    if (progress.hasStopped()) return giveUp(descriptor());
    std::this_thread::sleep_for(drainPause);
  }
  // What the device itself still buffers leaves in a time that its driver bounds.
  ::tcdrain(descriptor());
  return WriteResult::done;
}

}  // namespace tellaxis::platform
