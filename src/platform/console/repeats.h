// Repeats: which of many equal messages are told, so that a step that fails on every tick does not fill a log.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace tellaxis::platform {

class Repeats {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  /// A message is told when it comes for the first time, and then at most once in this time.
  static constexpr std::chrono::minutes pause{1};

  /// For a message that comes at `now`: how often it has come since it was last told, itself included; nothing while it
  /// is not to be told.
  std::optional<int> told(const std::string& message, Moment now) {
    if (seen_.size() >= mostRemembered && !seen_.contains(message)) seen_.clear();
    const auto [place, isNew] = seen_.try_emplace(message);
    Seen& seen = place->second;
    ++seen.count;
    if (!isNew && now - seen.lastTold < pause) return std::nullopt;
    seen.lastTold = now;
    return std::exchange(seen.count, 0);
  }

 private:
  static constexpr std::size_t mostRemembered = 100;

  struct Seen {
    Moment lastTold;
    int count = 0;
  };

  std::map<std::string, Seen> seen_;
};

}  // namespace tellaxis::platform
