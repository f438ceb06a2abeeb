// Absent serial ports: the lines of a computer without serial ports.
#pragma once

#include "platform/serial_port.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Gives lines that cannot be opened.
class AbsentSerialPorts : public SerialPorts {
 public:
  explicit AbsentSerialPorts(Trace& trace) : trace_(trace) {}

  std::unique_ptr<SerialPort> create() override;

 private:
  Trace& trace_;
};

}  // namespace tellaxis::platform
