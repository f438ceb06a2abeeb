// Trimmed: a text without the blanks around it.
#pragma once

#include <string_view>

namespace tellaxis {

/// `text` without the blanks at both ends.
inline std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace tellaxis
