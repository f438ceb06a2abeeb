// Timed write: writing that waits for its reader, but not for ever.
#pragma once

#include <chrono>
#include <string_view>

#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

// Both return false with `errno` on a failure, EAGAIN being that the time is over.

/// Waits until one of the poll events (POLLIN, POLLOUT), an error or a hang-up comes.
bool waitUntil(const Descriptor& descriptor, short events, std::chrono::steady_clock::time_point deadline);

/// Writes everything. Whoever reads from a device or pipe that does not block may take nothing for so long.
bool writeAll(const Descriptor& descriptor, std::string_view bytes,
              std::chrono::milliseconds timeout = std::chrono::seconds(2));

}  // namespace tellaxis::platform
