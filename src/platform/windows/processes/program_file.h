// Program file: the file that a program's name means.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tellaxis::platform {

/// The full path of the program's file: of a path, from the present folder; of a bare name, from the search path.
/// Nothing when there is no such file.
std::optional<std::wstring> programFile(std::string_view name);

}  // namespace tellaxis::platform
