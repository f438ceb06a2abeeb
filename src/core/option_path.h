// Option path: where a file or folder that the devices file names lies.
#pragma once

#include <string>
#include <string_view>

namespace tellaxis {

/// The path of an option, native and in UTF-8, as the rules form paths: in code page 1252, a relative one under
/// `mainFolder`. Empty for an empty one.
std::string optionPath(std::string_view option, std::string_view mainFolder);

}  // namespace tellaxis
