// Serial ports of Windows: COM lines by the system's communications operations.
#pragma once

#include "platform/serial_port.h"
#include "platform/trace.h"

namespace tellaxis::platform {

class WindowsSerialPorts : public SerialPorts {
 public:
  explicit WindowsSerialPorts(Trace& trace) : trace_(trace) {}

  std::unique_ptr<SerialPort> create() override;

 private:
  Trace& trace_;
};

}  // namespace tellaxis::platform
