// Serial ports of Windows: COM lines by the system's communications operations.
#pragma once

#include "platform/serial_port.h"
#include "platform/trace.h"

namespace tellaxis::platform::windows {

class SerialPorts : public platform::SerialPorts {
 public:
  explicit SerialPorts(Trace& trace) : trace_(trace) {}

  std::unique_ptr<SerialPort> create() override;

 private:
  Trace& trace_;
};

}  // namespace tellaxis::platform::windows
