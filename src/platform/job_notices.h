// Job notices: the system's word that a file has been written whole, so that a job need not wait for the next tick.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace tellaxis::platform {

/// A file that was written counts as whole this long after its last change and close: some writers open, append and
/// close for every line.
inline constexpr std::chrono::milliseconds quietTime{30};

/// Whoever made the notices is told, from a thread of theirs, when a file of a watched folder is whole: at once where
/// it was renamed into the folder, after `quietTime` where it was written there. A folder whose file system gives no
/// notices, such as another computer's, is not watched, and everything in it counts as whole. May be used by several
/// threads.
class JobNotices {
 public:
  virtual ~JobNotices() = default;

  /// Watches the folders of these files and folders that end with a backslash, instead of those watched before.
  virtual void watch(const std::vector<std::string>& paths) = 0;

  /// False while the file of this path was written less than `quietTime` ago.
  virtual bool isWhole(std::string_view path) = 0;

  /// Waits up to `duration`, but no longer than until the next file is whole.
  virtual void waitFor(std::chrono::milliseconds duration) = 0;
};

}  // namespace tellaxis::platform
