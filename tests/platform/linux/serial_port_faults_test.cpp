// Serial ports of Linux: devices that stall, and devices that come and go.
#include <gmock/gmock.h>

#include <chrono>
#include <thread>

#include "platform/linux/serial_port_under_test.h"

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using test::LinuxSerialPortTest;
using test::PseudoTerminal;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(LinuxSerialPortTest, GivesUpAfter2SecondsWhenTheDeviceTakesNoBytes) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  const auto start = steady_clock::now();
  EXPECT_FALSE(port->write(std::string(200'000, 'x')));
  const auto taken = steady_clock::now() - start;
  EXPECT_GE(taken, 1900ms);
  EXPECT_LE(taken, 2500ms);
  EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("non accetta dati")));
}

TEST_F(LinuxSerialPortTest, GivesUpSoonerOnTheNextWritesOfAStalledDevice) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  EXPECT_FALSE(port->write(std::string(200'000, 'x')));
  const auto start = steady_clock::now();
  EXPECT_FALSE(port->write(std::string(200'000, 'x')));
  EXPECT_LE(steady_clock::now() - start, 500ms);
}

TEST_F(LinuxSerialPortTest, WaitsAsLongAsEverOnceTheDeviceTookBytesAgain) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  EXPECT_FALSE(port->write(std::string(200'000, 'x')));
  terminal.receive(100'000);
  EXPECT_TRUE(port->write("di nuovo"));
  EXPECT_THAT(terminal.receive(8), HasSubstr("di nuovo"));
  const auto start = steady_clock::now();
  EXPECT_FALSE(port->write(std::string(200'000, 'x')));
  EXPECT_GE(steady_clock::now() - start, 1900ms);
}

TEST_F(LinuxSerialPortTest, WaitsForASlowDeviceAsLongAsItTakesBytes) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  const std::string text(30'000, 'x');
  std::size_t received = 0;
  std::jthread slowDevice([&] {
    while (received < text.size()) {
      std::this_thread::sleep_for(800ms);
      char buffer[10'000];
      received += static_cast<std::size_t>(::read(terminal.descriptor(), buffer, sizeof buffer));
    }
  });
  const auto start = steady_clock::now();
  EXPECT_TRUE(port->write(text));
  EXPECT_GE(steady_clock::now() - start, 2000ms);
}

TEST_F(LinuxSerialPortTest, ClosesAStalledDeviceAtOnce) {
  const PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  EXPECT_FALSE(port->write(std::string(200'000, 'x')));
  const auto start = steady_clock::now();
  EXPECT_TRUE(port->close());
  EXPECT_LE(steady_clock::now() - start, 100ms);
}

TEST_F(LinuxSerialPortTest, WritesToADeviceThatWasPulledOutAndPutBack) {
  PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open({.baud = 2400}));
  ASSERT_TRUE(port->write("prima"));
  terminal.unplug();
  const PseudoTerminal again;
  again.linkAs(link);
  EXPECT_TRUE(port->write("dopo"));
  EXPECT_EQ(again.receive(4), "dopo");
  EXPECT_EQ(settingsOf(again).c_ospeed, 2400U);
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(LinuxSerialPortTest, FailsWhileTheDeviceIsAwayAndStaysOpenForItsReturn) {
  PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  terminal.unplug();
  EXPECT_FALSE(port->write("perso"));
  EXPECT_TRUE(port->isOpen());
  EXPECT_FALSE(port->write("perso"));
  const PseudoTerminal again;
  again.linkAs(link);
  EXPECT_TRUE(port->write("dopo"));
  EXPECT_EQ(again.receive(4), "dopo");
}

TEST_F(LinuxSerialPortTest, KeepsSettingsThatChangedWhileTheDeviceWasAway) {
  PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  terminal.unplug();
  EXPECT_FALSE(port->write("perso"));
  EXPECT_TRUE(port->configure({.baud = 1200}));
  const PseudoTerminal again;
  again.linkAs(link);
  EXPECT_TRUE(port->write("dopo"));
  EXPECT_EQ(settingsOf(again).c_ospeed, 1200U);
}

TEST_F(LinuxSerialPortTest, ClosesALineWhoseDeviceIsAway) {
  PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  terminal.unplug();
  EXPECT_TRUE(port->close());
  EXPECT_FALSE(port->isOpen());
  EXPECT_FALSE(open());
}

TEST_F(LinuxSerialPortTest, LetsGoOfADeviceThatWasPulledOutSoThatItsNameIsFree) {
  PseudoTerminal terminal;
  terminal.linkAs(link);
  ASSERT_TRUE(open());
  terminal.unplug();
  const auto end = steady_clock::now() + 1s;
  while (openTerminals() != 0 && steady_clock::now() < end) std::this_thread::sleep_for(5ms);
  EXPECT_EQ(openTerminals(), 0);
}

}  // namespace
}  // namespace tellaxis::platform
