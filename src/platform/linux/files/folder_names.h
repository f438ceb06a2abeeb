// Folder names: finding a name in a folder without regard to case, quickly in folders that rest.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <ctime>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

/// What a folder has in answer to a name.
struct NameMatch {
  bool asSpelled = false;
  std::optional<std::string> otherwise;  ///< differs in case alone; of several the first by its bytes
};

/// A folder is read anew for every look-up, unless it rests: the names of the few resting ones that were asked for last
/// are kept for as long as the time of the folder's last change stays the same. May be used by several threads.
class FolderNames {
 public:
  /// A folder rests that has not changed for this long; only then does the next change show in its time, which some
  /// file systems keep in seconds alone.
  explicit FolderNames(std::chrono::milliseconds rest = std::chrono::seconds(2)) : rest_(rest) {}

  /// Looks in `folder`, a native path with its ending separator, or empty for the working folder. Nothing, with
  /// `errno`, when the folder cannot be read.
  std::optional<NameMatch> find(const std::string& folder, std::string_view name);

  /// True when it is known without reading the folder that it has nothing like `name`.
  bool isKnownToLack(const std::string& folder, std::string_view name);

 private:
  /// The names by their upper-case texts.
  using Names = std::unordered_map<std::string, std::vector<std::string>>;

  struct Kept {
    dev_t device = 0;
    ino_t inode = 0;
    timespec changed{};
    std::uint64_t lastUse = 0;
    bool tooMany = false;  ///< names to keep
    Names names;
  };

  Kept* kept(const std::string& folder);
  Kept* keep(const std::string& folder, const Descriptor& opened);
  void makeRoom();

  const std::chrono::milliseconds rest_;
  std::mutex mutex_;
  std::map<std::string, Kept> folders_;
  std::uint64_t uses_ = 0;
};

}  // namespace tellaxis::platform
