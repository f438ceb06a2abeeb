// Program file: the file that a program's name means, and the words of its arguments.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/files/paths.h"

namespace tellaxis::platform {

/// The words of a program's arguments: split at blanks, double quotes group and are dropped.
std::vector<std::string> wordsOf(std::string_view arguments);

/// The native path of the program's file: a name with a separator or a drive is a path, any other is looked up on PATH.
/// Nothing when there is no such file.
std::optional<std::string> programFile(std::string_view name, const Paths& paths);

}  // namespace tellaxis::platform
