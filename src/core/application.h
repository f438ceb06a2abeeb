// Application: what the program calls itself.
#pragma once

#include <string_view>

namespace tellaxis {

/// Title of message boxes that have none of their own, and of the main window.
inline constexpr std::string_view applicationTitle = "Tellaxis";

}  // namespace tellaxis
