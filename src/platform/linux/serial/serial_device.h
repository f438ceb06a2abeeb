// Serial device: one device file, opened for us alone and written to without ever waiting for good.
#pragma once

#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "platform/linux/kernel/descriptor.h"
#include "platform/serial_port.h"

namespace tellaxis::platform {

enum class WriteResult {
  done,
  stuck,  ///< the device took no byte for too long; what it had not sent was thrown away
  gone,   ///< the device went away
};

class SerialDevice {
 public:
  /// Opens the device at `path` with these settings; null, with the reason in `errno`, when it is missing, is no serial
  /// device, is used by somebody else, or refuses the settings.
  static std::unique_ptr<SerialDevice> open(const std::string& path, const LineSettings& settings);

  /// Takes over a descriptor that never blocks.
  explicit SerialDevice(Descriptor descriptor);
  ~SerialDevice();
  SerialDevice(const SerialDevice&) = delete;
  SerialDevice& operator=(const SerialDevice&) = delete;

  int descriptor() const { return descriptor_.number(); }

  bool configure(const LineSettings& settings);

  /// Writes all bytes and waits until they have left.
  WriteResult write(std::string_view bytes);

 private:
  WriteResult hand(std::string_view bytes);
  WriteResult drain();
  WriteResult giveUp();
  int bytesWaiting() const;
  bool isStuck();

  Descriptor descriptor_;
  asio::io_context context_;
  asio::posix::stream_descriptor stream_;
  std::chrono::milliseconds patience_;
  int waitingBefore_ = 0;
  std::chrono::steady_clock::time_point lastProgress_;
};

}  // namespace tellaxis::platform
