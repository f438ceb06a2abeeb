// Serial ports of Windows: COM lines by the system's communications operations.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/serial/serial_line.h"
#include "platform/serial_port.h"
#include "platform/trace.h"

namespace tellaxis::platform {

class WindowsSerialPorts : public SerialPorts, private SerialDevices {
 public:
  explicit WindowsSerialPorts(Trace& trace) : trace_(trace) {}

  std::unique_ptr<SerialPort> create() override;
  std::vector<SerialPortInfo> list() override;

 private:
  std::string nameOf(int number) const override;
  std::unique_ptr<SerialDevice> open(int number, const LineSettings& settings, const LineBuffers& buffers,
                                     std::string& reason) override;

  Trace& trace_;
};

}  // namespace tellaxis::platform
