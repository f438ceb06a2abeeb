// Serial port contract: what every implementation of serial_port.h owes its callers.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>

#include "platform/serial_port.h"

namespace tellaxis::test {

/// A Desk makes a computer without a line at COM 231:
///   platform::SerialPorts& serialPorts();
///   int failures(): steps that were reported as failed
/// and for SerialPortContract, with a device at COM 3:
///   std::string received(size): what came to the device, as soon as it is so long
///   void pullOut(), void putBack(): the device
template <class Desk>
struct MissingSerialPortContract : testing::Test {
  Desk desk;
  std::unique_ptr<platform::SerialPort> port = desk.serialPorts().create();
};

TYPED_TEST_SUITE_P(MissingSerialPortContract);

TYPED_TEST_P(MissingSerialPortContract, AMissingLineCannotBeOpened) {
  EXPECT_FALSE(this->port->open(231, {}, {}));
  EXPECT_FALSE(this->port->isOpen());
  EXPECT_EQ(this->desk.failures(), 1);
}

TYPED_TEST_P(MissingSerialPortContract, AClosedLineTakesNothing) {
  EXPECT_FALSE(this->port->isOpen());
  EXPECT_FALSE(this->port->write("x"));
  EXPECT_FALSE(this->port->configure({}));
  EXPECT_FALSE(this->port->close());
  EXPECT_EQ(this->desk.failures(), 3);
}

TYPED_TEST_P(MissingSerialPortContract, TheListNamesEveryLineOnce) {
  const auto ports = this->desk.serialPorts().list();
  for (const auto& listed : ports) {
    EXPECT_FALSE(listed.device.empty());
    EXPECT_EQ(std::ranges::count(ports, listed.device, &platform::SerialPortInfo::device), 1) << listed.device;
  }
}

REGISTER_TYPED_TEST_SUITE_P(MissingSerialPortContract, AMissingLineCannotBeOpened, AClosedLineTakesNothing,
                            TheListNamesEveryLineOnce);

template <class Desk>
struct SerialPortContract : MissingSerialPortContract<Desk> {
  bool open() { return this->port->open(3, {.baud = 2400}, {}); }
};

TYPED_TEST_SUITE_P(SerialPortContract);

TYPED_TEST_P(SerialPortContract, WhatIsWrittenReachesTheDevice) {
  ASSERT_TRUE(this->open());
  EXPECT_TRUE(this->port->isOpen());
  EXPECT_TRUE(this->port->configure({.baud = 9600}));
  EXPECT_TRUE(this->port->write("Totale"));
  EXPECT_TRUE(this->port->write(""));
  EXPECT_TRUE(this->port->write(" 12,50"));
  EXPECT_EQ(this->desk.received(12), "Totale 12,50");
  EXPECT_TRUE(this->port->close());
  EXPECT_FALSE(this->port->isOpen());
  EXPECT_EQ(this->desk.failures(), 0);
}

TYPED_TEST_P(SerialPortContract, AnOpenLineIsNotOpenedAgainAndGoesOn) {
  ASSERT_TRUE(this->open());
  EXPECT_FALSE(this->open());
  EXPECT_TRUE(this->port->isOpen());
  EXPECT_TRUE(this->port->write("x"));
  EXPECT_EQ(this->desk.failures(), 1);
}

TYPED_TEST_P(SerialPortContract, AClosedLineIsOpenedAgain) {
  for (int round = 0; round < 3; ++round) {
    EXPECT_TRUE(this->open());
    EXPECT_TRUE(this->port->close());
  }
  EXPECT_FALSE(this->port->close());
}

TYPED_TEST_P(SerialPortContract, ALineOutlivesItsDevice) {
  ASSERT_TRUE(this->open());
  this->desk.pullOut();
  EXPECT_FALSE(this->port->write("perso"));
  EXPECT_TRUE(this->port->isOpen());
  EXPECT_TRUE(this->port->configure({.baud = 1200}));
  this->desk.putBack();
  EXPECT_TRUE(this->port->write("dopo"));
  EXPECT_EQ(this->desk.received(4), "dopo");
}

TYPED_TEST_P(SerialPortContract, ALineWhoseDeviceIsAwayIsClosed) {
  ASSERT_TRUE(this->open());
  this->desk.pullOut();
  EXPECT_TRUE(this->port->close());
  EXPECT_FALSE(this->open());
}

REGISTER_TYPED_TEST_SUITE_P(SerialPortContract, WhatIsWrittenReachesTheDevice, AnOpenLineIsNotOpenedAgainAndGoesOn,
                            AClosedLineIsOpenedAgain, ALineOutlivesItsDevice, ALineWhoseDeviceIsAwayIsClosed);

}  // namespace tellaxis::test
