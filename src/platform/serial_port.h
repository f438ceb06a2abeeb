// Serial ports: COM lines opened by number, written to, and closed.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/serial/line_settings.h"

namespace tellaxis::platform {

/// Sizes that the driver is asked for, in bytes, and the counts of bytes at which it would raise an event (0: never).
struct LineBuffers {
  int input = 1024;
  int output = 512;
  int receiveThreshold = 0;
  int sendThreshold = 0;

  bool operator==(const LineBuffers&) const = default;
};

/// One serial line. Destroying an open line closes it.
class SerialPort {
 public:
  virtual ~SerialPort() = default;

  /// Opens COM `number` with these settings. An open line, a missing or busy device, and settings that the device
  /// refuses are failures.
  virtual bool open(int number, const LineSettings& settings, const LineBuffers& buffers) = 0;

  virtual bool isOpen() const = 0;

  /// Changes the settings of an open line.
  virtual bool configure(const LineSettings& settings) = 0;

  /// Writes all bytes and returns when the device has them. A device that takes none for 2 s is a failure; so is a line
  /// that is not open. A device that went away or got stuck is opened anew by the next write.
  virtual bool write(std::string_view bytes) = 0;

  /// Closes the line when what was written has left, after 2 s at the latest. Closing a closed line is a failure.
  virtual bool close() = 0;
};

/// One line of the computer; texts in code page 1252.
struct SerialPortInfo {
  int number = 0;           ///< COM number; 0 when it has none
  std::string device;       ///< how the system calls it
  std::string description;  ///< of the adapter, where known
  std::string heldBy;       ///< the program that has it open, where known

  bool operator==(const SerialPortInfo&) const = default;
};

/// Where serial lines come from.
class SerialPorts {
 public:
  virtual ~SerialPorts() = default;

  /// A line that is not open yet; never null.
  virtual std::unique_ptr<SerialPort> create() = 0;

  /// The lines that the computer has, and those that were given a number and are not there at present.
  virtual std::vector<SerialPortInfo> list() = 0;
};

}  // namespace tellaxis::platform
