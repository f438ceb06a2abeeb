// Serial ports of Linux: an open line outlives its device, so that an adapter may be pulled out and put back.
#include "platform/linux/serial_port.h"

#include <cerrno>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/linux/kernel/reason.h"
#include "platform/linux/serial/hang_up_watch.h"
#include "platform/linux/serial/serial_device.h"

namespace tellaxis::platform {

namespace {

constexpr std::string_view closed = "la porta \xE8 chiusa";

/// The device while it is there. A device that hangs up is let go at once: as long as somebody holds it, an adapter
/// that is put back gets another name.
class WatchedDevice {
 public:
  ~WatchedDevice() { release(); }

  bool open(const std::string& path, const LineSettings& settings) {
    release();
    device_ = SerialDevice::open(path, settings);
    if (!device_) return false;
    watch_.emplace(device_->descriptor(), [this] { forget(); });
    return true;
  }

  void release() {
    watch_.reset();
    forget();
  }

  /// True without a device: the settings count when it comes back.
  bool configure(const LineSettings& settings) {
    const std::lock_guard lock(mutex_);
    return !device_ || device_->configure(settings);
  }

  WriteResult write(std::string_view bytes) {
    const std::lock_guard lock(mutex_);
    return device_ ? device_->write(bytes) : WriteResult::gone;
  }

 private:
  void forget() {
    const std::lock_guard lock(mutex_);
    device_.reset();
  }

  std::mutex mutex_;
  std::unique_ptr<SerialDevice> device_;
  std::optional<HangUpWatch> watch_;
};

class LinuxSerialPort : public SerialPort {
 public:
  LinuxSerialPort(const LinuxSerialPorts& ports, Trace& trace) : ports_(ports), trace_(trace) {}

  bool open(int number, const LineSettings& settings, const LineBuffers& /*the system sizes them*/) override {
    if (open_) return fail("open", "\xE8 gi\xE0 aperta");
    number_ = number;
    settings_ = settings;
    open_ = openDevice();
    return open_;
  }

  bool isOpen() const override { return open_; }

  bool configure(const LineSettings& settings) override {
    if (!open_) return fail("configure", closed);
    if (!device_.configure(settings)) return fail("configure", reasonOf(errno));
    settings_ = settings;
    return true;
  }

  bool write(std::string_view bytes) override {
    if (!open_) return fail("write", closed);
    WriteResult result = device_.write(bytes);
    if (result == WriteResult::gone && openDevice()) result = device_.write(bytes);
    if (result == WriteResult::stuck) return fail("write", "la periferica non accetta dati");
    return result == WriteResult::done || fail("write", "la periferica non c'\xE8 pi\xF9");
  }

  bool close() override {
    if (!open_) return fail("close", closed);
    device_.release();
    open_ = false;
    return true;
  }

 private:
  bool openDevice() { return device_.open(ports_.deviceOf(number_), settings_) || fail("open", reasonOf(errno)); }

  bool fail(std::string_view operation, std::string_view reason) const {
    trace_.failed(operation, "COM" + std::to_string(number_) + " (" + ports_.deviceOf(number_) + ")", reason);
    return false;
  }

  const LinuxSerialPorts& ports_;
  Trace& trace_;
  int number_ = 0;
  LineSettings settings_;
  bool open_ = false;
  WatchedDevice device_;
};

}  // namespace

std::unique_ptr<SerialPort> LinuxSerialPorts::create() { return std::make_unique<LinuxSerialPort>(*this, trace_); }

std::string LinuxSerialPorts::deviceOf(int number) const {
  const auto named = devices_.find(number);
  return named != devices_.end() ? named->second : "/dev/ttyS" + std::to_string(number - 1);
}

}  // namespace tellaxis::platform
