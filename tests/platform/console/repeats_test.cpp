// Tests of what is told of messages that come again and again.
#include "platform/console/repeats.h"

#include <gtest/gtest.h>

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;

constexpr Repeats::Moment begin{};

TEST(Repeats, TheFirstOfEachMessageIsTold) {
  Repeats repeats;
  EXPECT_EQ(repeats.told("manca la carta", begin), 1);
  EXPECT_EQ(repeats.told("porta occupata", begin), 1);
}

TEST(Repeats, WithinAMinuteNoneIsToldAgainAndTheNextSaysHowManyCame) {
  Repeats repeats;
  EXPECT_EQ(repeats.told("manca la carta", begin), 1);
  for (int tick = 1; tick < 120; ++tick) EXPECT_EQ(repeats.told("manca la carta", begin + tick * 500ms), std::nullopt);
  EXPECT_EQ(repeats.told("manca la carta", begin + 60s), 120);
  EXPECT_EQ(repeats.told("manca la carta", begin + 61s), std::nullopt);
  EXPECT_EQ(repeats.told("manca la carta", begin + 200s), 2);
}

TEST(Repeats, AnyNumberOfDifferentMessagesIsTold) {
  Repeats repeats;
  for (int number = 0; number < 1000; ++number) EXPECT_EQ(repeats.told(std::to_string(number), begin), 1);
}

}  // namespace
}  // namespace tellaxis::platform
