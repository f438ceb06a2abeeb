// Serial ports of Linux: COM numbers standing for device files.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/serial/serial_line.h"
#include "platform/serial_port.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// A device that hangs up is let go at once: as long as somebody holds it, an adapter that is put back gets another
/// name.
class LinuxSerialPorts : public SerialPorts, private SerialDevices {
 public:
  /// `devices` says where COM numbers are, as native paths; COM n is /dev/ttyS(n-1) where it says nothing.
  LinuxSerialPorts(std::map<int, std::string> devices, Trace& trace) : devices_(std::move(devices)), trace_(trace) {}

  std::unique_ptr<SerialPort> create() override;
  std::vector<SerialPortInfo> list() override;

  std::string deviceOf(int number) const;

 private:
  std::string nameOf(int number) const override;
  std::unique_ptr<SerialDevice> open(int number, const LineSettings& settings, const LineBuffers& buffers,
                                     std::string& reason) override;

  std::map<int, std::string> devices_;
  Trace& trace_;
};

}  // namespace tellaxis::platform
