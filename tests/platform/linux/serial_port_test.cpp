// Serial ports of Linux: bytes, settings, exclusive use.
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/wait.h>

#include <csignal>
#include <fstream>
#include <thread>

#include "platform/linux/kernel/descriptor.h"
#include "platform/linux/serial/line_settings.h"
#include "platform/linux/serial_port_under_test.h"

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;
using test::LinuxSerialPortTest;
using test::PseudoTerminal;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string allBytes() {
  std::string bytes;
  for (int value = 0; value < 256; ++value) bytes += static_cast<char>(value);
  return bytes;
}

TEST_F(LinuxSerialPortTest, PassesAllByteValuesUnchanged) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  EXPECT_TRUE(port->write(allBytes()));
  EXPECT_EQ(terminal.receive(256), allBytes());
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(LinuxSerialPortTest, PassesATextLongerThanTheSystemsBuffer) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  const std::string text(200'000, 'x');
  std::string received;
  std::jthread reader([&] { received = terminal.receive(text.size()); });
  EXPECT_TRUE(port->write(text));
  reader.join();
  EXPECT_EQ(received.size(), text.size());
}

TEST_F(LinuxSerialPortTest, EchoesNothingBackToTheDevice) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  ASSERT_EQ(::write(terminal.descriptor(), "risposta\r\n\003", 11), 11);
  EXPECT_TRUE(terminal.isSilent());
}

TEST_F(LinuxSerialPortTest, TakesAnySpeed) {
  for (const int baud : {300, 1200, 9600, 14400, 19200, 28800, 115200, 123456}) {
    const PseudoTerminal terminal;
    terminal.linkAs(link);
    ASSERT_TRUE(open({.baud = baud})) << baud;
    EXPECT_EQ(settingsOf(terminal).c_ospeed, static_cast<unsigned>(baud));
    EXPECT_TRUE(port->close());
  }
}

TEST_F(LinuxSerialPortTest, ChangesTheSettingsOfAnOpenLine) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  EXPECT_TRUE(port->configure({.baud = 2400, .stopBits = StopBits::two}));
  EXPECT_EQ(settingsOf(terminal).c_ospeed, 2400U);
  EXPECT_NE(settingsOf(terminal).c_cflag & CSTOPB, 0U);
}

// A pseudo terminal forgets parity and 7 bits, so the flags themselves are looked at.
TEST(LineSettings, BecomeTheFlagsOfEachParity) {
  constexpr unsigned parityFlags = PARENB | PARODD | CMSPAR;
  const auto flagsOf = [](Parity parity) { return controlFlags({.parity = parity}) & parityFlags; };
  EXPECT_EQ(flagsOf(Parity::none), 0U);
  EXPECT_EQ(flagsOf(Parity::odd), unsigned{PARENB | PARODD});
  EXPECT_EQ(flagsOf(Parity::even), unsigned{PARENB});
  EXPECT_EQ(flagsOf(Parity::mark), unsigned{PARENB | PARODD | CMSPAR});
  EXPECT_EQ(flagsOf(Parity::space), unsigned{PARENB | CMSPAR});
}

TEST(LineSettings, BecomeTheFlagsOfDataAndStopBits) {
  EXPECT_EQ(controlFlags({.dataBits = 7}) & CSIZE, unsigned{CS7});
  EXPECT_EQ(controlFlags({.dataBits = 8}) & CSIZE, unsigned{CS8});
  EXPECT_EQ(controlFlags({.stopBits = StopBits::one}) & CSTOPB, 0U);
  EXPECT_EQ(controlFlags({.stopBits = StopBits::onePointFive}) & CSTOPB, unsigned{CSTOPB});
  EXPECT_EQ(controlFlags({.stopBits = StopBits::two}) & CSTOPB, unsigned{CSTOPB});
}

TEST(LineSettings, AreWithoutFlowControlAndIgnoreTheModemLines) {
  EXPECT_EQ(controlFlags({}) & CRTSCTS, 0U);
  EXPECT_EQ(controlFlags({}) & CLOCAL, unsigned{CLOCAL});
}

TEST_F(LinuxSerialPortTest, LeavesFlowControlOff) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  EXPECT_EQ(settingsOf(terminal).c_iflag & (IXON | IXOFF), 0U);
}

TEST_F(LinuxSerialPortTest, FailsForAMissingDeviceAndNamesIt) {
  EXPECT_FALSE(open());
  EXPECT_FALSE(port->isOpen());
  ASSERT_EQ(trace.lines.size(), 1U);
  EXPECT_EQ(trace.lines.front(), "open | COM3 (" + link + ") | non esiste");
}

TEST_F(LinuxSerialPortTest, FailsForAFileThatIsNoSerialDevice) {
  folder.write("ttyTest", "prima");
  EXPECT_FALSE(open());
  EXPECT_EQ(folder.read("ttyTest"), "prima");
  EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("non \xE8 una linea seriale")));
}

TEST_F(LinuxSerialPortTest, FailsWhenOpenAlready) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  EXPECT_FALSE(open());
  EXPECT_TRUE(port->isOpen());
  EXPECT_TRUE(port->write("x"));
}

TEST_F(LinuxSerialPortTest, FailsToWriteConfigureAndCloseWhenClosed) {
  EXPECT_FALSE(port->write("x"));
  EXPECT_FALSE(port->configure({}));
  EXPECT_FALSE(port->close());
  EXPECT_EQ(trace.lines.size(), 3U);
}

TEST_F(LinuxSerialPortTest, LooksForComNumbersAmongTheSystemsOwnDevices) {
  EXPECT_EQ(ports.deviceOf(3), link);
  EXPECT_EQ(ports.deviceOf(1), "/dev/ttyS0");
  EXPECT_EQ(ports.deviceOf(16), "/dev/ttyS15");
}

TEST_F(LinuxSerialPortTest, RefusesADeviceThatSomebodyElseUses) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  const auto other = ports.create();
  EXPECT_FALSE(other->open(3, {}, {}));
  EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("un altro programma")));
  EXPECT_TRUE(port->close());
  EXPECT_TRUE(other->open(3, {}, {}));
}

TEST_F(LinuxSerialPortTest, LeavesNoMarkOnAPseudoTerminalWhenItsProgramIsKilled) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  const pid_t child = ::fork();
  if (child == 0) {
    if (open()) ::raise(SIGKILL);
    ::_exit(1);
  }
  int end = 0;
  ASSERT_EQ(::waitpid(child, &end, 0), child);
  ASSERT_TRUE(WIFSIGNALED(end)) << "the line could not be opened";
  const Descriptor device(::open(terminal.device().c_str(), O_RDWR | O_NOCTTY));
  ASSERT_TRUE(device) << "an ordinary user is locked out";
  int exclusive = -1;
  ASSERT_EQ(::ioctl(device.number(), TIOCGEXCL, &exclusive), 0);
  EXPECT_EQ(exclusive, 0);
}

TEST_F(LinuxSerialPortTest, LeavesTheSettingsOfADeviceThatSomebodyElseUses) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open({.baud = 2400}));
  EXPECT_FALSE(ports.create()->open(3, {.baud = 9600}, {}));
  EXPECT_EQ(settingsOf(terminal).c_ospeed, 2400U);
}

TEST_F(LinuxSerialPortTest, IsNotInheritedByStartedPrograms) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (std::filesystem::read_symlink(entry.path(), gone) != terminal.device()) continue;
    EXPECT_EQ(::fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
  }
}

TEST_F(LinuxSerialPortTest, OpensAndClosesAgainAndAgain) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  for (int i = 0; i < 100; ++i) {
    ASSERT_TRUE(open());
    ASSERT_TRUE(port->write("x"));
    ASSERT_TRUE(port->close());
  }
  EXPECT_EQ(terminal.receive(100), std::string(100, 'x'));
}

TEST_F(LinuxSerialPortTest, WritesNothingForAnEmptyText) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  EXPECT_TRUE(port->write(""));
  EXPECT_TRUE(terminal.isSilent());
}

}  // namespace
}  // namespace tellaxis::platform
