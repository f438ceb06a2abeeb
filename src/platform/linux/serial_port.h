// Serial ports of Linux: COM numbers standing for device files.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "platform/serial_port.h"
#include "platform/trace.h"

namespace tellaxis::platform {

class LinuxSerialPorts : public SerialPorts {
 public:
  /// `devices` says where COM numbers are, as native paths; COM n is /dev/ttyS(n-1) where it says nothing.
  LinuxSerialPorts(std::map<int, std::string> devices, Trace& trace) : devices_(std::move(devices)), trace_(trace) {}

  std::unique_ptr<SerialPort> create() override;

  std::string deviceOf(int number) const;

 private:
  std::map<int, std::string> devices_;
  Trace& trace_;
};

}  // namespace tellaxis::platform
