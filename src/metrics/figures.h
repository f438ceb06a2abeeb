// Figures: what is counted while the bridge runs.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/activity.h"
#include "core/outcome.h"
#include "platform/trace.h"

namespace tellaxis {

/// How long jobs took, counted by upper limits.
class Durations {
 public:
  struct Limit {
    std::chrono::microseconds time;
    std::string_view text;  ///< in seconds
  };
  static constexpr std::size_t limitCount = 11;
  static const std::array<Limit, limitCount>& limits();

  void add(std::chrono::microseconds duration);

  /// How many took no longer than the limit of this index; of `limitCount`: all.
  std::uint64_t upTo(std::size_t limit) const;
  std::chrono::microseconds sum() const { return sum_; }

 private:
  std::array<std::uint64_t, limitCount + 1> counts_{};
  std::chrono::microseconds sum_{0};
};

/// The figures of one device.
struct DeviceFigures {
  std::array<std::uint64_t, outcomeCount> jobs{};  ///< by outcome
  Durations durations;
  std::optional<std::chrono::milliseconds> lastJob;  ///< when it ended, since 1970
};

/// How long the longest tick of the last minutes took. It is told at intervals, and whoever reads what was told may
/// come more seldom: so the last few intervals count.
class LongestTick {
 public:
  void add(std::chrono::microseconds duration);
  std::chrono::microseconds longest() const;
  /// A new interval begins.
  void nextInterval();

 private:
  static constexpr std::size_t intervals = 20;
  std::array<std::chrono::microseconds, intervals> longest_{};
  std::size_t present_ = 0;
};

/// Failing steps by operation, in the order in which they first failed.
class FailedSteps : public platform::Trace {
 public:
  void failed(std::string_view operation, std::string_view subject, std::string_view reason) override;

  /// Operations are in code page 1252.
  const std::vector<std::pair<std::string, std::uint64_t>>& counts() const { return counts_; }

 private:
  std::vector<std::pair<std::string, std::uint64_t>> counts_;
};

struct Figures {
  DeviceFigures& of(Device device) { return devices[static_cast<std::size_t>(device)]; }
  const DeviceFigures& of(Device device) const { return devices[static_cast<std::size_t>(device)]; }
  void count(Device device, Outcome outcome) { ++of(device).jobs[static_cast<std::size_t>(outcome)]; }

  std::array<DeviceFigures, deviceCount> devices;
  LongestTick ticks;
  FailedSteps failedSteps;
};

}  // namespace tellaxis
