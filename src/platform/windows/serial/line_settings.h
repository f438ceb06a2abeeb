// Line settings: a serial device's speed and framing, by the system's device control block.
#pragma once

#include <windows.h>

#include "platform/serial/line_settings.h"

namespace tellaxis::platform {

/// The device's state with these settings in it, both of our own lines raised. False, with the system's last error,
/// when the device refuses.
bool applyLineSettings(HANDLE device, const LineSettings& settings);

}  // namespace tellaxis::platform
