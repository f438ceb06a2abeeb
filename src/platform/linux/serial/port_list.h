// Port list: the serial devices that the computer has, and which programs hold them.
#pragma once

#include <string>
#include <vector>

#include "platform/serial_port.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// The system's serial devices, by the names of their files; without numbers.
std::vector<SerialPortInfo> systemPorts(Trace& trace);

/// True for two paths of one device.
bool isSameDevice(const std::string& left, const std::string& right);

/// Name and number of a program that has the device open, of those that this user may look into; else empty.
std::string holderOf(const std::string& device);

}  // namespace tellaxis::platform
