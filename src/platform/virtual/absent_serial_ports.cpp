// Absent serial ports: opening always fails and says why.
#include "platform/virtual/absent_serial_ports.h"

#include <string>

namespace tellaxis::platform {

namespace {

class AbsentSerialPort : public SerialPort {
 public:
  explicit AbsentSerialPort(Trace& trace) : trace_(trace) {}

  bool open(int number, const LineSettings&, const LineBuffers&) override {
    trace_.failed("open", "COM" + std::to_string(number), "nessuna porta seriale");
    return false;
  }
  bool isOpen() const override { return false; }
  bool configure(const LineSettings&) override { return notOpen("configure"); }
  bool write(std::string_view) override { return notOpen("write"); }
  bool close() override { return notOpen("close"); }

 private:
  bool notOpen(std::string_view operation) {
    trace_.failed(operation, "COM", "la porta non \xE8 aperta");
    return false;
  }

  Trace& trace_;
};

}  // namespace

std::unique_ptr<SerialPort> AbsentSerialPorts::create() { return std::make_unique<AbsentSerialPort>(trace_); }

}  // namespace tellaxis::platform
