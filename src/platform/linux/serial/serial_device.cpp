// Serial device: exclusive opening, writing with a time limit, and a close that does not wait.
#include "platform/linux/serial/serial_device.h"

#include <fcntl.h>
#include <linux/serial.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <asio/buffer.hpp>
#include <cerrno>
#include <optional>
#include <thread>
#include <utility>

#include "platform/linux/serial/line_settings.h"

namespace tellaxis::platform {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

/// A device may take no byte for so long. One that was stuck the last time is given less, so that a job of many lines
/// does not hold up the other devices line by line.
constexpr auto usualPatience = 2000ms;
constexpr auto shortPatience = 200ms;

/// Between two looks at what the device has sent.
constexpr auto handPause = 50ms;
constexpr auto drainPause = 1ms;

/// Locks out other programs: by the device's own mark, which does not bind a privileged user, and by a lock.
bool makeExclusive(int descriptor) {
  if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) return ::ioctl(descriptor, TIOCEXCL) == 0;
  if (errno == EWOULDBLOCK) errno = EBUSY;
  return false;
}

/// The close of a device that holds on to its output otherwise takes up to 30 s. The system may refuse the wish.
void closeWithoutWaiting(int descriptor) {
  serial_struct details = {};
  if (::ioctl(descriptor, TIOCGSERIAL, &details) != 0) return;
  details.closing_wait = ASYNC_CLOSING_WAIT_NONE;
  ::ioctl(descriptor, TIOCSSERIAL, &details);
}

}  // namespace

std::unique_ptr<SerialDevice> SerialDevice::open(const std::string& path, const LineSettings& settings) {
  Descriptor descriptor(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (!descriptor || ::isatty(descriptor.number()) == 0 || !makeExclusive(descriptor.number())) return nullptr;
  try {
    auto device = std::make_unique<SerialDevice>(std::move(descriptor));
    return device->configure(settings) ? std::move(device) : nullptr;
  } catch (const asio::system_error& failure) {
    errno = failure.code().value();
    return nullptr;
  }
}

SerialDevice::SerialDevice(Descriptor descriptor)
    : descriptor_(std::move(descriptor)), stream_(context_, descriptor_.number()), patience_(usualPatience) {}

SerialDevice::~SerialDevice() {
  const int error = errno;
  ::ioctl(descriptor(), TIOCNXCL);
  stream_.release();
  errno = error;
}

bool SerialDevice::configure(const LineSettings& settings) { return applyLineSettings(descriptor(), settings); }

WriteResult SerialDevice::write(std::string_view bytes) {
  waitingBefore_ = bytesWaiting();
  lastProgress_ = steady_clock::now();
  const WriteResult handed = hand(bytes);
  return handed == WriteResult::done ? drain() : handed;
}

/// Hands all bytes to the system's buffer.
WriteResult SerialDevice::hand(std::string_view bytes) {
  while (!bytes.empty()) {
    std::optional<asio::error_code> error;
    std::size_t taken = 0;
    stream_.async_write_some(asio::buffer(bytes), [&](asio::error_code result, std::size_t size) {
      error = result;
      taken = size;
    });
    context_.restart();
    do context_.run_for(handPause);
    while (!error && !isStuck());
    if (!error) {
      stream_.cancel();
      context_.run();
    }
    if (*error == asio::error::operation_aborted) return giveUp();
    if (*error) return WriteResult::gone;
    bytes.remove_prefix(taken);
    waitingBefore_ = bytesWaiting();
    lastProgress_ = steady_clock::now();
  }
  return WriteResult::done;
}

/// Waits until the device has sent what the system's buffer holds.
WriteResult SerialDevice::drain() {
  for (int waiting = bytesWaiting(); waiting != 0; waiting = bytesWaiting()) {
    if (waiting < 0) return WriteResult::gone;
    if (isStuck()) return giveUp();
    std::this_thread::sleep_for(drainPause);
  }
  // What the device itself still buffers leaves in a time that its driver bounds.
  ::tcdrain(descriptor());
  patience_ = usualPatience;
  return WriteResult::done;
}

WriteResult SerialDevice::giveUp() {
  ::tcflush(descriptor(), TCOFLUSH);
  closeWithoutWaiting(descriptor());
  patience_ = shortPatience;
  return WriteResult::stuck;
}

/// Bytes in the system's buffer; below 0 when the device went away.
int SerialDevice::bytesWaiting() const {
  int waiting = 0;
  return ::ioctl(descriptor(), TIOCOUTQ, &waiting) == 0 ? waiting : -1;
}

bool SerialDevice::isStuck() {
  const auto now = steady_clock::now();
  const int waiting = bytesWaiting();
  if (waiting < waitingBefore_) lastProgress_ = now;
  waitingBefore_ = waiting;
  return now - lastProgress_ >= patience_;
}

}  // namespace tellaxis::platform
