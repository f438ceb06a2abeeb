// Names: comparing paths, sections and keys without regard to case.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace tellaxis::fake {

inline std::string lower(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c; });
  return result;
}

}  // namespace tellaxis::fake
