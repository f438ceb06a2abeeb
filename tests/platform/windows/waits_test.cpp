// Tests of waiting by the compiler's own libraries: as long as it is told, and at rest.
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

/// What this process has used of the processors.
std::chrono::nanoseconds processorTime() {
  FILETIME created;
  FILETIME ended;
  FILETIME kernel;
  FILETIME user;
  GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
  const auto number = [](const FILETIME& time) {
    return static_cast<std::int64_t>((static_cast<std::uint64_t>(time.dwHighDateTime) << 32U) | time.dwLowDateTime);
  };
  return std::chrono::nanoseconds((number(kernel) + number(user)) * 100);
}

TEST(Waits, ASleepOfLessThanASecondIsNoShorter) {
  const auto begun = steady_clock::now();
  std::this_thread::sleep_for(200ms);
  // The system's timer and its counter need not agree to the last millisecond.
  EXPECT_GE(steady_clock::now() - begun, 180ms);
}

TEST(Waits, WhatDoesNotComeIsWaitedForAtRest) {
  std::mutex mutex;
  std::condition_variable changed;
  std::unique_lock lock(mutex);
  const auto begun = steady_clock::now();
  const auto used = processorTime();
  EXPECT_FALSE(changed.wait_for(lock, 1500ms, [] { return false; }));
  EXPECT_GE(steady_clock::now() - begun, 1480ms);
  EXPECT_LT(processorTime() - used, 500ms);
}

TEST(Waits, WhatComesEndsTheWait) {
  std::mutex mutex;
  std::condition_variable changed;
  bool came = false;
  const auto begun = steady_clock::now();
  std::thread other([&] {
    std::this_thread::sleep_for(100ms);
    const std::lock_guard lock(mutex);
    came = true;
    changed.notify_all();
  });
  {
    std::unique_lock lock(mutex);
    EXPECT_TRUE(changed.wait_for(lock, 60s, [&] { return came; }));
  }
  other.join();
  EXPECT_LT(steady_clock::now() - begun, 30s);
}

}  // namespace
}  // namespace tellaxis::platform
