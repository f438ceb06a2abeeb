// Serial line: the course of a COM line on every system, over a device that may go away and come back.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "platform/serial_port.h"
#include "platform/trace.h"

namespace tellaxis::platform {

enum class WriteResult {
  done,
  stuck,  ///< the device took no byte for too long; what it had not sent was thrown away
  gone,   ///< the device went away
};

/// A serial device of the system, open for us alone. Destroying it closes it without waiting.
class SerialDevice {
 public:
  virtual ~SerialDevice() = default;

  /// Changes its settings. False, with the reason, when it refuses; true when it is away.
  virtual bool configure(const LineSettings& settings, std::string& reason) = 0;

  /// Writes all bytes, as long as the device takes at least one in a time of `limit`.
  virtual WriteResult write(std::string_view bytes, std::chrono::milliseconds limit) = 0;

  /// Waits until everything written has left, at most `limit`.
  virtual void drain(std::chrono::milliseconds limit) = 0;
};

/// The serial devices of the system.
class SerialDevices {
 public:
  virtual ~SerialDevices() = default;

  /// How messages name COM `number`.
  virtual std::string nameOf(int number) const = 0;

  /// Opens COM `number`; null, with the reason, when it is missing, busy, or refuses the settings.
  virtual std::unique_ptr<SerialDevice> open(int number, const LineSettings& settings, const LineBuffers& buffers,
                                             std::string& reason) = 0;
};

/// An open line outlives its device, so that an adapter may be pulled out and put back. A device that got stuck is
/// opened anew for the next write.
class SerialLine : public SerialPort {
 public:
  SerialLine(SerialDevices& devices, Trace& trace) : devices_(devices), trace_(trace) {}
  ~SerialLine() override { release(); }
  SerialLine(const SerialLine&) = delete;
  SerialLine& operator=(const SerialLine&) = delete;

  bool open(int number, const LineSettings& settings, const LineBuffers& buffers) override;
  bool isOpen() const override { return open_; }
  bool configure(const LineSettings& settings) override;
  bool write(std::string_view bytes) override;
  bool close() override;

 private:
  bool openDevice();
  void release();
  bool fail(std::string_view operation, std::string_view reason) const;

  SerialDevices& devices_;
  Trace& trace_;
  int number_ = 0;
  LineSettings settings_;
  LineBuffers buffers_;
  bool open_ = false;
  bool stuck_ = false;  ///< the last write found it so
  std::unique_ptr<SerialDevice> device_;
};

}  // namespace tellaxis::platform
