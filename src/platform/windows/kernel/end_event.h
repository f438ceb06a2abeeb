// End event: by which another process asks the copy that serves a main folder to end.
#pragma once

#include <string_view>

#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

/// The event of `mainFolder`, made for the copy that serves it: it stays set once it was. Whoever works at the computer
/// may set it, an administrator and the system itself too.
UniqueHandle createEndEvent(std::string_view mainFolder);

/// The event that a copy made, to be set; null when no copy serves `mainFolder`.
UniqueHandle openEndEvent(std::string_view mainFolder);

}  // namespace tellaxis::platform
