// Failed moves: files that could not be moved, until something has changed that may have been the reason.
#pragma once

#include <sys/stat.h>

#include <array>
#include <map>
#include <optional>
#include <string>

#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

/// Files are known by their native paths.
class FailedMoves {
 public:
  void add(const std::string& path);

  /// True for a file that could not be moved, while it, its folder and the folder it was to go to are as they were at
  /// the first look after that. `file` is open.
  bool isStuck(const std::string& path, const Descriptor& file, const Descriptor& folder, const Descriptor& target);

 private:
  struct Facts {
    ino_t inode = 0;
    off_t size = 0;
    timespec written{};
    timespec changed{};

    bool operator==(const Facts& other) const;
  };
  using State = std::array<Facts, 3>;

  static Facts factsOf(const Descriptor& opened);

  std::map<std::string, std::optional<State>> failed_;
};

}  // namespace tellaxis::platform
