// Second copy: what is said when the lock of the main folder is not to be had.
#pragma once

#include <string>
#include <string_view>

namespace tellaxis {

/// `otherCopy` names the copy that serves the folder where there is one; otherwise the text names the lock file and why
/// it cannot be locked. Both are in UTF-8.
std::string refusalOf(const std::string& mainFolder, std::string_view otherCopy);

}  // namespace tellaxis
