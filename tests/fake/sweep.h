// Sweep: fails every call of a procedure in turn and compares what the procedure still does with what the rule demands.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tellaxis::fake {

using Calls = std::vector<std::string>;

/// Runs a procedure on a fresh computer of which the call of this number fails (0: none), and returns the journal.
using RunWithFailure = std::function<Calls(std::size_t failingCall)>;

/// How the journal differs when `call` fails: the `dropped` calls after it are not made, and those of `instead` are
/// made in their place.
struct WhenFailed {
  std::string call;
  std::size_t occurrence = 0;  ///< 1 is the first time that the call is made; 0 is every time
  std::size_t dropped = 0;
  Calls instead;
};

/// For every call of an undisturbed run: the journal of the run in which that call fails must be the undisturbed one,
/// changed only as a row of `exceptions` that names the call says. Every row must have been met.
inline void sweepFailingSteps(const RunWithFailure& run, const std::vector<WhenFailed>& exceptions = {}) {
  const Calls undisturbed = run(0);
  ASSERT_FALSE(undisturbed.empty());
  std::vector<bool> met(exceptions.size());
  for (std::size_t k = 0; k < undisturbed.size(); ++k) {
    if (undisturbed[k].starts_with("sleep ")) continue;
    Calls expected = undisturbed;
    for (std::size_t place = 0; place < exceptions.size(); ++place) {
      const WhenFailed& row = exceptions[place];
      const auto made =
          std::count(undisturbed.begin(), undisturbed.begin() + static_cast<std::ptrdiff_t>(k) + 1, row.call);
      if (row.call != undisturbed[k] || (row.occurrence != 0 && made != static_cast<std::ptrdiff_t>(row.occurrence)))
        continue;
      met[place] = true;
      const auto next = expected.begin() + static_cast<std::ptrdiff_t>(k) + 1;
      const auto kept = expected.erase(next, next + static_cast<std::ptrdiff_t>(row.dropped));
      expected.insert(kept, row.instead.begin(), row.instead.end());
      break;
    }
    EXPECT_THAT(run(k + 1), testing::ElementsAreArray(expected))
        << "with call " << k + 1 << " failing: " << undisturbed[k];
  }
  for (std::size_t place = 0; place < exceptions.size(); ++place)
    EXPECT_TRUE(met[place]) << "never made, or another row came first: " << exceptions[place].call;
}

/// For every call of an undisturbed run, of a procedure that leaves at its first failing step: the run in which that
/// call fails must make no call after it.
inline void sweepLeavingSteps(const RunWithFailure& run) {
  const Calls undisturbed = run(0);
  ASSERT_FALSE(undisturbed.empty());
  for (std::size_t k = 0; k < undisturbed.size(); ++k) {
    const Calls expected(undisturbed.begin(), undisturbed.begin() + static_cast<std::ptrdiff_t>(k) + 1);
    EXPECT_THAT(run(k + 1), testing::ElementsAreArray(expected))
        << "with call " << k + 1 << " failing: " << undisturbed[k];
  }
}

}  // namespace tellaxis::fake
