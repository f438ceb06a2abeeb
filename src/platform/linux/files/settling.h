// Settling: when a file was last seen to change, where nobody can say whether its writer has finished.
#pragma once

#include <sys/stat.h>

#include <chrono>
#include <map>
#include <mutex>
#include <string>

namespace tellaxis::platform {

/// May be used by several threads. Files are known by the paths they are asked for by.
class Settling {
 public:
  /// Nearly the time between two ticks, so that a file that is the same at two of them has settled.
  static constexpr std::chrono::milliseconds time{450};

  /// Looks at a file. True when its size and time are those of looks that began at least `time` ago.
  bool isSettled(const std::string& path, const struct stat& status);

  /// Takes a file as settled that this program itself put there.
  void accept(const std::string& path, const struct stat& status);

  void forget(const std::string& path);

 private:
  using Moment = std::chrono::steady_clock::time_point;

  struct Look {
    off_t size = 0;
    timespec changed{};
    Moment since;
    Moment last;
  };

  void makeRoom(Moment now);

  std::mutex mutex_;
  std::map<std::string, Look> looks_;
};

}  // namespace tellaxis::platform
