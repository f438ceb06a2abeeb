// Journal: one ordered list of every call to the fake computer, of which the k-th can be made to fail.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tellaxis::fake {

class Journal {
 public:
  /// Notes a call and tells whether it is to succeed.
  bool record(std::string call) {
    calls_.push_back(std::move(call));
    return calls_.size() != failing_;
  }

  /// Notes a wait; waits in a row are one entry, in whole hundredths of a second.
  void recordSleep(long milliseconds) {
    if (!calls_.empty() && calls_.back().starts_with("sleep ")) {
      calls_.pop_back();
    } else {
      slept_ = 0;
    }
    slept_ += milliseconds;
    calls_.push_back("sleep " + std::to_string((slept_ + 5) / 10));
  }

  /// The call of this number, counted from 1, will fail; 0 lets all succeed. The journal starts anew.
  void failCall(std::size_t number) {
    failing_ = number;
    calls_.clear();
  }

  void clear() { calls_.clear(); }

  const std::vector<std::string>& calls() const { return calls_; }

  /// The calls whose text begins so.
  std::vector<std::string> callsThatBegin(std::string_view beginning) const {
    std::vector<std::string> found;
    for (const std::string& call : calls_)
      if (call.starts_with(beginning)) found.push_back(call);
    return found;
  }

 private:
  std::vector<std::string> calls_;
  std::size_t failing_ = 0;
  long slept_ = 0;
};

}  // namespace tellaxis::fake
