// File status: what the system tells of a file without opening it.
#pragma once

#include <optional>
#include <string>

#include "platform/files.h"

namespace tellaxis::platform {

// Both work on native paths and leave `errno` on a failure.

/// A link is followed.
std::optional<FileIdentity> identityOf(const std::string& native);

/// Whether the entry of this name could be taken out of its folder: by the folder's permissions, a sticky folder's
/// rule, a read-only file system and the mark that forbids every change.
bool canBeRemoved(const std::string& native);

}  // namespace tellaxis::platform
