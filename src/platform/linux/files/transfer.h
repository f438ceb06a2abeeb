// Transfer: bringing bytes to a place, whole or not at all, and names to files without replacing any.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/linux/files/paths.h"
#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

// All of these work on native paths and return false (or no descriptor) with `errno` on a failure.

/// Opens what must be a regular file for reading, without ever waiting for anybody.
Descriptor openRegularFile(const std::string& native);

/// Writes everything; a device or pipe that takes nothing for two seconds is a failure (EAGAIN).
bool writeAll(const Descriptor& file, std::string_view bytes);

/// Writes what is still to be read of `from`.
bool copyAll(const Descriptor& from, const Descriptor& to);

enum class Permissions {
  usual,      ///< those of the file that is replaced; of a new one, what the process's mask allows
  ownerAlone  ///< this process's user alone
};

/// Makes what `write` writes the content of `path`. A regular file is replaced as a whole, without a moment at which
/// its name stands for half of it; a device or pipe is written into; a link is followed. Where nothing exists at `path`
/// as spelled, another spelling is looked for.
bool replaceContent(const Paths& paths, const std::string& path, Permissions permissions,
                    const std::function<bool(const Descriptor&)>& write);

/// Gives `from` the name `to`, which nothing may have.
bool renameWithoutReplacing(const std::string& from, const std::string& to);

/// The same where the two are on different file systems; `opened` is `from`, open for reading.
bool carryOver(const Descriptor& opened, const std::string& from, const std::string& to);

}  // namespace tellaxis::platform
