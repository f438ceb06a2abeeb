// File name: names as the disk holds them, in UTF-8, and as the program knows them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tellaxis::platform {

/// Length of the part of `native` before its last name, the separator included.
std::size_t folderLength(std::string_view native);

/// A name on the disk in code page 1252; nothing when it has a character without a place there. A name that is no valid
/// UTF-8 is taken to be in code page 1252 already.
std::optional<std::string> textOfName(std::string_view name);

/// The last component of a native path.
std::string_view lastName(std::string_view native);

}  // namespace tellaxis::platform
