// Write all: a text written to its end.
#pragma once

#include <string_view>

#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

/// Writes everything; a device or pipe that takes nothing for two seconds is a failure (EAGAIN). False, with `errno`,
/// on a failure.
bool writeAll(const Descriptor& file, std::string_view bytes);

}  // namespace tellaxis::platform
