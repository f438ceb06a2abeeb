// Terminal device: one device file, opened for us alone and written to without ever waiting for good.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "platform/linux/kernel/descriptor.h"
#include "platform/serial/serial_line.h"

namespace tellaxis::platform {

class TerminalDevice {
 public:
  /// Opens the device at `path` with these settings; null, with the reason in `errno`, when it is missing, is no serial
  /// device, is used by somebody else, or refuses the settings.
  static std::unique_ptr<TerminalDevice> open(const std::string& path, const LineSettings& settings);

  /// Takes over a descriptor that never blocks.
  explicit TerminalDevice(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}
  ~TerminalDevice();
  TerminalDevice(const TerminalDevice&) = delete;
  TerminalDevice& operator=(const TerminalDevice&) = delete;

  int descriptor() const { return descriptor_.number(); }

  /// False, with the reason in `errno`, when the device refuses.
  bool configure(const LineSettings& settings);

  /// Writes all bytes and waits until they have left.
  WriteResult write(std::string_view bytes, std::chrono::milliseconds limit);

  /// Waits until the system's buffer is empty, as long as it gets emptier in a time of `limit`.
  WriteResult drain(std::chrono::milliseconds limit);

 private:
  Descriptor descriptor_;
};

}  // namespace tellaxis::platform
