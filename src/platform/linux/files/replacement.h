// Replacement: bringing bytes to a place, whole or not at all wherever that can be done.
#pragma once

#include <functional>
#include <string>

#include "platform/linux/files/paths.h"
#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

// All of these work on native paths and return false with `errno` on a failure.

/// Writes the whole of `from`, a regular file.
bool copyAll(const Descriptor& from, const Descriptor& to);

/// How a file comes to its place.
struct Replacing {
  bool ownerAlone = false;    ///< a new file, readable by this process's user alone; otherwise as the file that is
                              ///< replaced, or as the process's mask allows
  bool forEverybody = false;  ///< a new file that everybody may read
  bool orInPlace = false;  ///< a file that may be written into, but not replaced with its rights kept, is written into
};

/// Makes what `write` writes the content of `path`; `write` may be called twice. A regular file is replaced as a whole,
/// without a moment at which its name stands for half of it; a device or pipe is written into. A link is replaced
/// itself, and what it points to is left alone, unless that is a device: that is how devices get lasting names. Where
/// nothing exists at `path` as spelled, another spelling is looked for.
bool replaceContent(const Paths& paths, const std::string& path, Replacing how,
                    const std::function<bool(const Descriptor&)>& write);

/// Moves a file to another file system: `opened` is `from`, open for reading. Nothing may have the name `to`.
bool carryOver(const Descriptor& opened, const std::string& from, const std::string& to);

}  // namespace tellaxis::platform
