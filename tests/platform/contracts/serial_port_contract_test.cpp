// Serial port contract, held by the fake, and where no line is needed by the system that the tests run on.
#include "platform/contracts/serial_port_contract.h"

#include "fake/computer.h"
#include "platform/contracts/real_computer.h"

namespace tellaxis::test {
namespace {

struct RealDesk : RealComputer {
  platform::SerialPorts& serialPorts() const { return host().serialPorts; }
};

struct FakeDesk {
  fake::Computer computer;

  FakeDesk() {
    computer.serialPorts.missing = {231};
    computer.serialPorts.known = {{.number = 3, .device = "COM3"}};
  }
  platform::SerialPorts& serialPorts() { return computer.serialPorts; }
  int failures() const { return static_cast<int>(computer.trace.failures.size()); }

  /// What was written since the device was put in, the lines between the writes aside.
  std::string received(std::size_t size) const {
    constexpr std::string_view call = "serial write COM3 ";
    std::string bytes;
    for (const std::string& written : computer.journal.callsThatBegin(call)) bytes += written.substr(call.size());
    return bytes.size() > size ? bytes.substr(bytes.size() - size) : bytes;
  }
  void pullOut() { computer.serialPorts.away.insert(3); }
  void putBack() { computer.serialPorts.away.clear(); }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, MissingSerialPortContract, FakeDesk);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SerialPortContract, FakeDesk);
INSTANTIATE_TYPED_TEST_SUITE_P(Real, MissingSerialPortContract, RealDesk);

}  // namespace
}  // namespace tellaxis::test
