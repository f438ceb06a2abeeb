// Lock holder: the process that holds the lock on an open file.
#pragma once

#include <sys/types.h>

#include <optional>

namespace tellaxis::platform {

/// The process that holds a lock by `flock` on the file behind `descriptor`. Nothing where nobody does, or where it
/// belongs to another user.
std::optional<pid_t> lockHolder(int descriptor);

}  // namespace tellaxis::platform
