// Movable: what a passage from one folder to another would bring there.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace tellaxis::test {

/// The names of all files that could be moved now; nothing when one of the folders cannot be read.
inline std::optional<std::vector<std::string>> movable(platform::Files& files, std::string_view folder,
                                                       std::string_view target) {
  const auto passage = files.openPassage(folder, target);
  if (passage == nullptr) return std::nullopt;
  std::vector<std::string> names;
  while (auto name = passage->next()) names.push_back(std::move(*name));
  return names;
}

}  // namespace tellaxis::test
