// Attesa: how long the waits are, around midnight too.
#include "core/attesa.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>

#include <stdexcept>

#include "fake/computer.h"

namespace tellaxis {
namespace {

using namespace std::chrono_literals;

TEST(Attesa, WaitsTheGivenHundredths) {
  fake::Computer computer;
  Bridge bridge{computer.host};
  Attesa(bridge, std::int16_t{250}, true);
  EXPECT_GE(computer.clock.elapsed(), 2500ms);
  EXPECT_LE(computer.clock.elapsed(), 2510ms);
}

TEST(Attesa, ReturnsAtOnceForZeroAndForLess) {
  fake::Computer computer;
  Bridge bridge{computer.host};
  for (const double seconds : {0.0, 34'200.0, 86'399.9873}) {
    computer.clock.seconds = seconds;
    Attesa(bridge, std::int16_t{0}, true);
    Attesa(bridge, std::int16_t{-100}, true);
  }
  EXPECT_EQ(computer.clock.elapsed(), 0ms);
}

TEST(Attesa, LetsTheWindowWorkOnlyWhenItYields) {
  fake::Computer computer;
  Bridge bridge{computer.host};
  Attesa(bridge, std::int16_t{10}, true);
  EXPECT_TRUE(computer.journal.callsThatBegin("processEvents").empty());
  Attesa(bridge, std::int16_t{10}, false);
  EXPECT_GE(computer.journal.callsThatBegin("processEvents").size(), 5U);
}

TEST(Attesa, LooksAtTheClockOftenAndSleepsInBetween) {
  fake::Computer computer;
  Bridge bridge{computer.host};
  int sleeps = 0;
  computer.clock.onSleep = [&] { ++sleeps; };
  Attesa(bridge, std::int16_t{500}, true);
  EXPECT_GE(sleeps, 5000 / 50);
  EXPECT_LE(sleeps, 5000 / 50 + 5);
}

/// Ends a wait that the clock alone would not end.
struct StillWaiting : std::runtime_error {
  StillWaiting() : std::runtime_error("still waiting") {}
};

TEST(Attesa, AWaitThatSpansMidnightGoesOnIntoTheNewDay) {
  fake::Computer computer;
  Bridge bridge{computer.host};
  computer.clock.seconds = 86'399.5;
  computer.clock.onSleep = [&] {
    if (computer.clock.elapsed() > 24h) throw StillWaiting();
  };
  EXPECT_THROW(Attesa(bridge, std::int16_t{100}, true), StillWaiting);
}

TEST(Attesa, WithTheOptionAWaitThatSpansMidnightEndsWhenItsTimeIsOver) {
  for (const double seconds : {86'399.5, 86'399.99, 86'395.0}) {
    fake::Computer computer;
    Bridge bridge{computer.host, {.midnight = true}};
    computer.clock.seconds = seconds;
    Attesa(bridge, std::int16_t{1000}, true);
    EXPECT_GE(computer.clock.elapsed(), 9990ms) << seconds;
    EXPECT_LE(computer.clock.elapsed(), 10'060ms) << seconds;
  }
}

TEST(Attesa, WithTheOptionAClockThatIsSetBackIsNoMidnight) {
  fake::Computer computer;
  Bridge bridge{computer.host, {.midnight = true}};
  computer.clock.seconds = 10'000;
  computer.clock.after(100ms, [&] { computer.clock.seconds -= 3600; });
  Attesa(bridge, std::int16_t{1000}, true);
  EXPECT_GE(computer.clock.elapsed(), 3600s);
}

TEST(Attesa, AWaitEndsWhenTheNewDayPassesItsFigure) {
  fake::Computer computer;
  Bridge bridge{computer.host};
  computer.clock.seconds = 86'000;
  computer.clock.after(100ms, [&] { computer.clock.seconds = 0; });
  Attesa(bridge, std::int16_t{1000}, true);
  EXPECT_GE(computer.clock.elapsed(), 86'010s);
  EXPECT_LE(computer.clock.elapsed(), 86'011s);
}

TEST(Attesa, TheClockIsReadInSinglePrecision) {
  fake::Computer computer;
  Bridge bridge{computer.host};
  computer.clock.seconds = 86'399.0;
  Attesa(bridge, std::int16_t{95}, true);
  EXPECT_LE(computer.clock.elapsed(), 950ms);
  EXPECT_GE(computer.clock.elapsed(), 940ms);
}

TEST(Attesa, ADelayThatIsNoNumberDoesNotWait) {
  fake::Computer computer;
  Bridge bridge{computer.host};
  Attesa(bridge, Value(std::string("tanto")), true);
  Attesa(bridge, Value(Currency{400'000'000}), true);
  EXPECT_EQ(computer.clock.elapsed(), 0ms);
  EXPECT_EQ(computer.trace.failures.size(), 2U);
  Attesa(bridge, Value(Currency{200'000}), true);
  EXPECT_GE(computer.clock.elapsed(), 200ms);
}

TEST(PausaCicli, EndsForEveryCountAndTakesNoTimeToSpeakOf) {
  constexpr std::int16_t counts[] = {-32'768, -1, 0, 50, 32'767};
  for (const std::int16_t count : counts) {
    const auto begun = std::chrono::steady_clock::now();
    PausaCicli(count);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(200)) << count;
  }
}

}  // namespace
}  // namespace tellaxis
