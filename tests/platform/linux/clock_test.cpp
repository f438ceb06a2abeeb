// Tests of the clock of a Linux computer.
#include "platform/linux/clock.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <ctime>
#include <thread>

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;

TEST(LinuxClock, TellsTheLocalTime) {
  LinuxClock clock;
  for (;;) {
    const std::time_t before = std::time(nullptr);
    const DateTime now = clock.now();
    const double seconds = clock.secondsSinceMidnight();
    if (std::time(nullptr) != before) continue;
    tm local{};
    ::localtime_r(&before, &local);
    EXPECT_EQ(now.year, local.tm_year + 1900);
    EXPECT_EQ(now.month, local.tm_mon + 1);
    EXPECT_EQ(now.day, local.tm_mday);
    EXPECT_EQ(now.weekday, local.tm_wday);
    EXPECT_EQ(now.hour, local.tm_hour);
    EXPECT_EQ(now.minute, local.tm_min);
    EXPECT_EQ(static_cast<int>(seconds), (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec);
    return;
  }
}

TEST(LinuxClock, CountsFractionsOfAMillisecond) {
  LinuxClock clock;
  // The smallest of many steps: the processor may have been somebody else's in any one of them.
  double smallest = 1;
  for (int step = 0; step < 1000; ++step) {
    const double start = clock.secondsSinceMidnight();
    double now = start;
    while (now == start) now = clock.secondsSinceMidnight();
    if (now > start) smallest = std::min(smallest, now - start);
  }
  EXPECT_LT(smallest, 0.001);
}

TEST(LinuxClock, SleepsForTheTimeGivenAndNoLonger) {
  LinuxClock clock;
  const auto start = std::chrono::steady_clock::now();
  clock.sleep(30ms);
  clock.sleep(0ms);
  clock.sleep(-5ms);
  const auto slept = std::chrono::steady_clock::now() - start;
  EXPECT_GE(slept, 30ms);
  EXPECT_LT(slept, 1s);
}

TEST(LinuxClock, SleepsOnAfterASignal) {
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = [](int) {};
  ::sigaction(SIGUSR1, &action, &before);
  const pthread_t sleeper = ::pthread_self();
  std::thread disturber([&] {
    for (int i = 0; i < 5; ++i) {
      std::this_thread::sleep_for(5ms);
      ::pthread_kill(sleeper, SIGUSR1);
    }
  });
  const auto start = std::chrono::steady_clock::now();
  LinuxClock().sleep(60ms);
  EXPECT_GE(std::chrono::steady_clock::now() - start, 60ms);
  disturber.join();
  ::sigaction(SIGUSR1, &before, nullptr);
}

}  // namespace
}  // namespace tellaxis::platform
