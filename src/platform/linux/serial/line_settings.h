// Line settings: a serial device's speed, framing and raw mode, by the system's own calls.
#pragma once

#include "platform/serial_port.h"

namespace tellaxis::platform {

/// The control flags that these settings need, the speed aside. Two stop bits stand in for one and a half: a receiver
/// that waits for less is content with more, and the devices cannot do it otherwise.
unsigned controlFlags(const LineSettings& settings);

/// Makes the line raw, at these settings. False, with the reason in `errno`, when the device
/// refuses, or runs at a speed that is more than 2 % off.
bool applyLineSettings(int descriptor, const LineSettings& settings);

}  // namespace tellaxis::platform
