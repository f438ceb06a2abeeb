// Serial line: open, configure, write, open anew, close.
#include "platform/serial/serial_line.h"

namespace tellaxis::platform {

namespace {

using namespace std::chrono_literals;

/// A device may take no byte for so long. One that was stuck the last time is given less, so that a job of many lines
/// does not hold up the other devices line by line.
constexpr auto writeLimit = 2000ms;
constexpr auto writeLimitOfStuck = 200ms;

/// What an adapter still holds is cut off when it is closed.
constexpr auto closeLimit = 2000ms;

constexpr std::string_view closed = "la porta \xE8 chiusa";

}  // namespace

bool SerialLine::open(int number, const LineSettings& settings, const LineBuffers& buffers) {
  if (open_) return fail("open", "\xE8 gi\xE0 aperta");
  number_ = number;
  settings_ = settings;
  buffers_ = buffers;
  stuck_ = false;
  open_ = openDevice();
  return open_;
}

bool SerialLine::configure(const LineSettings& settings) {
  if (!open_) return fail("configure", closed);
  std::string reason;
  if (device_ && !device_->configure(settings, reason)) return fail("configure", reason);
  settings_ = settings;
  return true;
}

bool SerialLine::write(std::string_view bytes) {
  if (!open_) return fail("write", closed);
  const auto limit = stuck_ ? writeLimitOfStuck : writeLimit;
  WriteResult result = device_ && !stuck_ ? device_->write(bytes, limit) : WriteResult::gone;
  if (result == WriteResult::gone && openDevice()) result = device_->write(bytes, limit);
  stuck_ = result == WriteResult::stuck;
  if (stuck_) return fail("write", "la periferica non accetta dati");
  return result == WriteResult::done || fail("write", "la periferica non c'\xE8 pi\xF9");
}

bool SerialLine::close() {
  if (!open_) return fail("close", closed);
  release();
  open_ = false;
  return true;
}

bool SerialLine::openDevice() {
  // A device that went away keeps its name as long as it is held.
  device_.reset();
  std::string reason;
  device_ = devices_.open(number_, settings_, buffers_, reason);
  return device_ != nullptr || fail("open", reason);
}

void SerialLine::release() {
  if (device_ && !stuck_) device_->drain(closeLimit);
  device_.reset();
}

bool SerialLine::fail(std::string_view operation, std::string_view reason) const {
  trace_.failed(operation, devices_.nameOf(number_), reason);
  return false;
}

}  // namespace tellaxis::platform
