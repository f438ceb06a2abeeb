// Serial port contract, held by a Linux computer with a device at the far end of a pseudo terminal.
#include "platform/contracts/serial_port_contract.h"

#include <optional>

#include "platform/linux/serial_port.h"
#include "platform/pseudo_terminal.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::test {
namespace {

struct LinuxDesk {
  TemporaryFolder folder;
  std::string link = folder / "ttyTest";
  TraceLog trace;
  platform::LinuxSerialPorts ports{{{3, link}}, trace};
  std::optional<PseudoTerminal> terminal;

  LinuxDesk() { putBack(); }

  platform::SerialPorts& serialPorts() { return ports; }
  int failures() const { return static_cast<int>(trace.lines.size()); }
  std::string received(std::size_t size) const { return terminal->receive(size); }
  void pullOut() { terminal->unplug(); }
  void putBack() {
    terminal.emplace();
    terminal->linkAs(link);
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, MissingSerialPortContract, LinuxDesk);
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, SerialPortContract, LinuxDesk);

TEST(LinuxSerialPorts, TheListTellsTheNumberAndWhoHoldsTheLine) {
  LinuxDesk desk;
  const auto port = desk.ports.create();
  ASSERT_TRUE(port->open(3, {}, {}));
  const auto ports = desk.ports.list();
  const auto listed = std::ranges::find(ports, 3, &platform::SerialPortInfo::number);
  ASSERT_NE(listed, ports.end());
  EXPECT_EQ(listed->device, desk.link);
  EXPECT_THAT(listed->heldBy, testing::HasSubstr(std::to_string(::getpid())));
  EXPECT_TRUE(port->close());
  for (const platform::SerialPortInfo& later : desk.ports.list())
    EXPECT_TRUE(later.number != 3 || later.heldBy.empty()) << later.heldBy;
}

}  // namespace
}  // namespace tellaxis::test
