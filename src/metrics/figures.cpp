// Figures: counting.
#include "metrics/figures.h"

#include <algorithm>
#include <numeric>

namespace tellaxis {

namespace {

using namespace std::chrono_literals;

constexpr std::array<Durations::Limit, Durations::limitCount> table{{
    {50ms, "0.05"},
    {100ms, "0.1"},
    {250ms, "0.25"},
    {500ms, "0.5"},
    {1s, "1.0"},
    {2500ms, "2.5"},
    {5s, "5.0"},
    {10s, "10.0"},
    {30s, "30.0"},
    {60s, "60.0"},
    {120s, "120.0"},
}};

/// The program knows about sixty; should one be made up of what varies, the memory does not grow with it.
constexpr std::size_t mostOperations = 100;

}  // namespace

const std::array<Durations::Limit, Durations::limitCount>& Durations::limits() { return table; }

void Durations::add(std::chrono::microseconds duration) {
  const auto* limit = std::ranges::find_if(table, [&](const Limit& row) { return duration <= row.time; });
  ++counts_.at(static_cast<std::size_t>(limit - table.begin()));
  sum_ += duration;
}

std::uint64_t Durations::upTo(std::size_t limit) const {
  return std::accumulate(counts_.begin(), counts_.begin() + static_cast<std::ptrdiff_t>(limit) + 1, std::uint64_t{0});
}

void LongestTick::add(std::chrono::microseconds duration) {
  auto& present = longest_.at(present_);
  present = std::max(present, duration);
}

std::chrono::microseconds LongestTick::longest() const { return *std::ranges::max_element(longest_); }

void LongestTick::nextInterval() {
  present_ = (present_ + 1) % intervals;
  longest_.at(present_) = 0us;
}

void FailedSteps::failed(std::string_view operation, std::string_view /*subject*/, std::string_view /*reason*/) {
  const auto found = std::ranges::find(counts_, operation, [](const auto& row) { return std::string_view(row.first); });
  if (found != counts_.end())
    ++found->second;
  else if (counts_.size() < mostOperations)
    counts_.emplace_back(operation, 1);
}

}  // namespace tellaxis
