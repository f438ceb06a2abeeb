// Listed passage: files on their way to another folder, by the operations of the files as they stand.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files.h"

namespace tellaxis::platform {

/// For file systems on which a step costs no more by its path than by an open file.
class ListedPassage : public Passage {
 public:
  /// `names` are those of the files in `folder`, sorted; `isMovable` tells at its turn whether one can be moved.
  ListedPassage(Files& files, std::string_view folder, std::string_view target, std::vector<std::string> names,
                std::function<bool(std::string_view name)> isMovable)
      : files_(files),
        folder_(endedWithBackslash(folder)),
        target_(endedWithBackslash(target)),
        names_(std::move(names)),
        isMovable_(std::move(isMovable)) {}

  std::optional<std::string> next() override {
    while (taken_ < names_.size())
      if (isMovable_(names_[taken_++])) return name();
    return std::nullopt;
  }

  bool isTaken() override { return files_.exists(target_ + name()); }
  bool move() override { return files_.move(folder_ + name(), target_ + name()); }

 private:
  static std::string endedWithBackslash(std::string_view folder) {
    return std::string(folder) + (folder.ends_with('\\') ? "" : "\\");
  }

  const std::string& name() const { return names_[taken_ - 1]; }

  Files& files_;
  std::string folder_;
  std::string target_;
  std::vector<std::string> names_;
  std::function<bool(std::string_view name)> isMovable_;
  std::size_t taken_ = 0;
};

}  // namespace tellaxis::platform
