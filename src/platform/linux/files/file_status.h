// File status: what the system tells of a file without opening it.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "platform/files.h"

namespace tellaxis::platform {

// All of these leave `errno` on a failure. Paths are native ones.

/// A link is followed.
std::optional<FileIdentity> identityOf(const std::string& native);

/// Whether the entry of this name could be taken out of its folder: by the folder's permissions, a sticky folder's
/// rule, a read-only file system and the mark that forbids every change.
bool canBeRemoved(const std::string& native);

/// In a sticky folder an entry is taken out only by its owner, the folder's owner, or who may act for every owner.
bool stickinessAllows(const struct stat& folder, const struct stat& file);

}  // namespace tellaxis::platform
