// Serial ports of Linux: devices that are watched while they are open.
#include "platform/linux/serial_port.h"

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <optional>

#include "platform/linux/kernel/reason.h"
#include "platform/linux/serial/hang_up_watch.h"
#include "platform/linux/serial/port_list.h"
#include "platform/linux/serial/terminal_device.h"

namespace tellaxis::platform {

namespace {

/// The device while it is there.
class WatchedDevice : public SerialDevice {
 public:
  explicit WatchedDevice(std::unique_ptr<TerminalDevice> device) : device_(std::move(device)) {
    watch_.emplace(device_->descriptor(), [this] { forget(); });
  }
  ~WatchedDevice() override { watch_.reset(); }
  WatchedDevice(const WatchedDevice&) = delete;
  WatchedDevice& operator=(const WatchedDevice&) = delete;

  bool configure(const LineSettings& settings, std::string& reason) override {
    const std::lock_guard lock(mutex_);
    if (!device_ || device_->configure(settings)) return true;
    reason = reasonOf(errno);
    return false;
  }

  WriteResult write(std::string_view bytes, std::chrono::milliseconds limit) override {
    const std::lock_guard lock(mutex_);
    return device_ ? device_->write(bytes, limit) : WriteResult::gone;
  }

  void drain(std::chrono::milliseconds limit) override {
    const std::lock_guard lock(mutex_);
    if (device_) device_->drain(limit);
  }

 private:
  void forget() {
    const std::lock_guard lock(mutex_);
    device_.reset();
  }

  std::mutex mutex_;
  std::unique_ptr<TerminalDevice> device_;
  std::optional<HangUpWatch> watch_;
};

/// The COM number n of /dev/ttyS(n-1), or 0.
int usualNumberOf(const std::string& device) {
  for (int number = 1; number <= 256; ++number)
    if (device == "/dev/ttyS" + std::to_string(number - 1)) return number;
  return 0;
}

}  // namespace

std::unique_ptr<SerialPort> LinuxSerialPorts::create() {
  SerialDevices& devices = *this;
  return std::make_unique<SerialLine>(devices, trace_);
}

std::vector<SerialPortInfo> LinuxSerialPorts::list() {
  std::vector<SerialPortInfo> ports = systemPorts(trace_);
  for (SerialPortInfo& port : ports) {
    port.number = usualNumberOf(port.device);
    if (devices_.contains(port.number)) port.number = 0;
  }
  for (const auto& named : devices_) {
    const std::string& device = named.second;
    const auto listed = std::find_if(ports.begin(), ports.end(),
                                     [&](const SerialPortInfo& port) { return isSameDevice(port.device, device); });
    if (listed != ports.end())
      listed->number = named.first;
    else
      ports.push_back({.number = named.first, .device = device, .description = "", .heldBy = holderOf(device)});
  }
  return ports;
}

std::string LinuxSerialPorts::deviceOf(int number) const {
  const auto named = devices_.find(number);
  return named != devices_.end() ? named->second : "/dev/ttyS" + std::to_string(number - 1);
}

std::string LinuxSerialPorts::nameOf(int number) const {
  return "COM" + std::to_string(number) + " (" + deviceOf(number) + ")";
}

std::unique_ptr<SerialDevice> LinuxSerialPorts::open(int number, const LineSettings& settings,
                                                     const LineBuffers& /*the system sizes them*/,
                                                     std::string& reason) {
  auto device = TerminalDevice::open(deviceOf(number), settings);
  if (device) return std::make_unique<WatchedDevice>(std::move(device));
  reason = reasonOf(errno);
  return nullptr;
}

}  // namespace tellaxis::platform
