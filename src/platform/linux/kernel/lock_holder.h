// Lock holder: the process that holds the lock on an open file.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <optional>

namespace tellaxis::platform {

/// The process that holds a lock by `flock` on the file behind `descriptor`. Nothing where nobody does, or where it
/// belongs to another user.
std::optional<pid_t> lockHolder(int descriptor);

/// The same for the file that `file` tells of, also where the process belongs to another user: then the system's list
/// is taken at its word, which knows the file by its number alone.
std::optional<pid_t> lockHolderOfAnyUser(const struct stat& file);

}  // namespace tellaxis::platform
