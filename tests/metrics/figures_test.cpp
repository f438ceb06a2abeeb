// Figures: limits, the longest tick of the last minutes, failing steps.
#include "metrics/figures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tellaxis {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;

TEST(DurationsTest, EachLimitCountsWhatTookNoLonger) {
  Durations durations;
  for (const auto duration : {20ms, 50ms, 51ms, 700ms, 300'000ms}) durations.add(duration);
  EXPECT_EQ(durations.upTo(0), 2U) << "50 ms";
  EXPECT_EQ(durations.upTo(1), 3U) << "100 ms";
  EXPECT_EQ(durations.upTo(4), 4U) << "1 s";
  EXPECT_EQ(durations.upTo(10), 4U) << "120 s";
  EXPECT_EQ(durations.upTo(Durations::limitCount), 5U) << "all";
  EXPECT_EQ(durations.sum(), 300'821ms);
}

TEST(DurationsTest, TheLimitsRiseAndAreWrittenAsTheyAre) {
  std::chrono::microseconds before{0};
  for (const Durations::Limit& limit : Durations::limits()) {
    EXPECT_GT(limit.time, before);
    EXPECT_DOUBLE_EQ(std::stod(std::string(limit.text)), std::chrono::duration<double>(limit.time).count());
    before = limit.time;
  }
}

TEST(LongestTickTest, ItIsForgottenAfterTwentyIntervals) {
  LongestTick ticks;
  EXPECT_EQ(ticks.longest(), 0us);
  ticks.add(3s);
  ticks.add(1s);
  for (int interval = 1; interval < 20; ++interval) {
    ticks.nextInterval();
    ticks.add(2ms);
    EXPECT_EQ(ticks.longest(), 3s) << interval;
  }
  ticks.nextInterval();
  EXPECT_EQ(ticks.longest(), 2ms);
}

TEST(FailedStepsTest, TheyAreCountedByOperation) {
  FailedSteps steps;
  steps.failed("copy", "a", "manca");
  steps.failed("EndDoc", "LPT1:", "carta finita");
  steps.failed("copy", "b", "manca");
  EXPECT_THAT(steps.counts(), ElementsAre(Pair("copy", 2U), Pair("EndDoc", 1U)));
}

TEST(FailedStepsTest, OperationsMadeUpOfWhatVariesDoNotFillTheMemory) {
  FailedSteps steps;
  for (int i = 0; i < 1000; ++i) steps.failed("passo " + std::to_string(i), "", "");
  EXPECT_THAT(steps.counts(), SizeIs(100));
}

}  // namespace
}  // namespace tellaxis
