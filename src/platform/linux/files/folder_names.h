// Folder names: finding a name in a folder without regard to case, quickly in big folders too.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/linux/kernel/descriptor.h"

struct inotify_event;

namespace tellaxis::platform {

/// What a folder has in answer to a name.
struct NameMatch {
  bool asSpelled = false;
  std::optional<std::string> otherwise;  ///< differs in case alone; of several the first by its bytes
};

/// A folder is read anew for every look-up. Of the few big ones that were asked for last, the names are kept, and the
/// system's notices of every change, whoever makes it, are taken in before each answer. Where the system gives no such
/// notices (network file systems) big folders are read anew too. May be used by several threads.
class FolderNames {
 public:
  /// Looks in `folder`, a native path with its ending separator, or empty for the working folder. Nothing, with
  /// `errno`, when the folder cannot be read.
  std::optional<NameMatch> find(const std::string& folder, std::string_view name);

  /// True when it is known without reading the folder that it has nothing like `name`.
  bool isKnownToLack(const std::string& folder, std::string_view name);

 private:
  using Names = std::unordered_map<std::string, std::vector<std::string>>;  ///< by their upper-case texts

  struct Watched {
    int watch = -1;
    dev_t device = 0;
    ino_t inode = 0;
    std::uint64_t lastUse = 0;
    Names names;
  };

  Watched* watched(const std::string& folder);
  void begin(const std::string& folder);
  void end(int watch);
  void makeRoom();
  void takeNotices();
  void take(const inotify_event& notice);

  std::mutex mutex_;
  Descriptor notices_;
  std::map<std::string, Watched> folders_;
  std::uint64_t uses_ = 0;
};

}  // namespace tellaxis::platform
