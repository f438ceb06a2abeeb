// Serial control: the settings text, and every property as a step that may fail.
#include "core/form/serial_control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/bridge.h"
#include "fake/computer.h"

namespace tellaxis {
namespace {

using platform::LineSettings;
using platform::Parity;
using platform::StopBits;
using testing::ElementsAre;
using testing::IsEmpty;

struct Desk {
  fake::Computer computer;
  SerialControl port{computer.host};

  const std::vector<std::string>& calls() const { return computer.journal.calls(); }
  std::size_t failures() const { return computer.trace.failures.size(); }
};

TEST(SerialControl, OpensItsPortWithTheSettingsAssignedBefore) {
  Desk desk;
  EXPECT_TRUE(desk.port.CommPort(4));
  EXPECT_TRUE(desk.port.Settings("2400,E,7,2"));
  EXPECT_TRUE(desk.port.InBufferSize(1024));
  EXPECT_TRUE(desk.port.OutBufferSize(2048));
  EXPECT_TRUE(desk.port.RThreshold(0));
  EXPECT_TRUE(desk.port.SThreshold(0));
  EXPECT_THAT(desk.calls(), IsEmpty());
  EXPECT_TRUE(desk.port.PortOpen(true));
  EXPECT_TRUE(desk.port.PortOpen());
  EXPECT_THAT(desk.calls(), ElementsAre("serial open COM4 2400,E,7,2 buffers 1024 2048"));
}

TEST(SerialControl, SendsEachOutputAsOneWriteOf8BitCharacters) {
  Desk desk;
  desk.port.PortOpen(true);
  desk.computer.journal.clear();
  EXPECT_TRUE(desk.port.Output("caff\xE8 \x80"));
  EXPECT_TRUE(desk.port.Output(" \r\n"));
  EXPECT_THAT(desk.calls(), ElementsAre("serial write COM1 caff\xE8 \x80", "serial write COM1  \r\n"));
}

TEST(SerialControl, KeepsItsSettingsWhenATextIsNotOfTheForm) {
  Desk desk;
  EXPECT_TRUE(desk.port.Settings("2400,E,7,2"));
  EXPECT_FALSE(desk.port.Settings("veloce"));
  EXPECT_EQ(desk.port.Settings(), (LineSettings{2400, Parity::even, 7, StopBits::two}));
  EXPECT_EQ(desk.failures(), 1U);
}

TEST(SerialControl, ChangesTheSettingsOfAnOpenPortAtOnce) {
  Desk desk;
  desk.port.PortOpen(true);
  desk.computer.journal.clear();
  EXPECT_TRUE(desk.port.Settings("2400,E,7,2"));
  EXPECT_THAT(desk.calls(), ElementsAre("serial configure COM1 2400,E,7,2"));
}

TEST(SerialControl, KeepsTheSettingsThatAnOpenPortRefuses) {
  Desk desk;
  desk.port.PortOpen(true);
  desk.computer.journal.failCall(1);
  EXPECT_FALSE(desk.port.Settings("2400,E,7,2"));
  EXPECT_EQ(desk.port.Settings(), LineSettings{});
}

TEST(SerialControl, RefusesAnotherNumberWhileThePortIsOpen) {
  Desk desk;
  desk.port.CommPort(2);
  desk.port.PortOpen(true);
  EXPECT_FALSE(desk.port.CommPort(3));
  EXPECT_EQ(desk.port.CommPort(), 2);
  EXPECT_EQ(desk.failures(), 1U);
  desk.port.PortOpen(false);
  EXPECT_TRUE(desk.port.CommPort(3));
}

TEST(SerialControl, RefusesNumbersBelow1) {
  Desk desk;
  for (const int number : {0, -1, -32768}) EXPECT_FALSE(desk.port.CommPort(static_cast<std::int16_t>(number)));
  EXPECT_EQ(desk.port.CommPort(), 1);
}

TEST(SerialControl, RefusesBuffersOfNoSize) {
  Desk desk;
  EXPECT_FALSE(desk.port.InBufferSize(0));
  EXPECT_FALSE(desk.port.OutBufferSize(-1));
  EXPECT_EQ(desk.port.buffers(), platform::LineBuffers{});
}

TEST(SerialControl, FailsToOpenAnOpenPortAndToCloseAClosedOne) {
  Desk desk;
  EXPECT_FALSE(desk.port.PortOpen(false));
  EXPECT_TRUE(desk.port.PortOpen(true));
  EXPECT_FALSE(desk.port.PortOpen(true));
  EXPECT_TRUE(desk.port.PortOpen());
  EXPECT_TRUE(desk.port.PortOpen(false));
  EXPECT_FALSE(desk.port.PortOpen());
}

TEST(SerialControl, FailsToOpenAMissingDevice) {
  Desk desk;
  desk.computer.serialPorts.missing = {1};
  EXPECT_FALSE(desk.port.PortOpen(true));
  EXPECT_FALSE(desk.port.PortOpen());
}

TEST(SerialControl, FailsToSendWhileThePortIsClosed) {
  Desk desk;
  EXPECT_FALSE(desk.port.Output("x"));
}

}  // namespace
}  // namespace tellaxis
