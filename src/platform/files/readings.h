// Readings: what became of the last attempts to read files, so that none is deleted unread.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace tellaxis::platform {

class Readings {
 public:
  enum class Outcome {
    none,    ///< nobody asked for the file
    given,   ///< it could be opened
    refused  ///< it was there and could not be opened
  };

  void note(std::string_view path, Outcome outcome) {
    if (outcomes_.size() >= most) outcomes_.clear();
    outcomes_.insert_or_assign(std::string(path), outcome);
  }

  /// What is known of the file that is about to be deleted; known no longer afterwards.
  Outcome take(std::string_view path) {
    const auto found = outcomes_.find(path);
    if (found == outcomes_.end()) return Outcome::none;
    const Outcome outcome = found->second;
    outcomes_.erase(found);
    return outcome;
  }

 private:
  /// Far more than there are files of jobs at any time.
  static constexpr std::size_t most = 1000;

  std::map<std::string, Outcome, std::less<>> outcomes_;
};

}  // namespace tellaxis::platform
