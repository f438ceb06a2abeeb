// Window call: one copy of the program reaching another one's window, by the main folder that it serves.
#include "platform/window_call.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/temporary_folder.h"

namespace tellaxis::platform {
namespace {

TEST(WindowCall, NobodyIsReachedWhereNoWindowListens) {
  const test::TemporaryFolder folder;
  EXPECT_FALSE(callWindow(folder.text()));
}

TEST(WindowCall, ACallIsHeardOnce) {
  const test::TemporaryFolder folder;
  const auto calls = listenForWindowCalls(folder.text());
  ASSERT_NE(calls, nullptr);
  EXPECT_FALSE(calls->called());
  EXPECT_TRUE(callWindow(folder.text()));
  EXPECT_TRUE(calls->called());
  EXPECT_FALSE(calls->called());
}

TEST(WindowCall, CallsInARowAreOne) {
  const test::TemporaryFolder folder;
  const auto calls = listenForWindowCalls(folder.text());
  ASSERT_NE(calls, nullptr);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(callWindow(folder.text()));
  EXPECT_TRUE(calls->called());
  EXPECT_FALSE(calls->called());
}

TEST(WindowCall, OtherMainFoldersHaveWindowsOfTheirOwn) {
  const test::TemporaryFolder one;
  const test::TemporaryFolder other;
  const auto calls = listenForWindowCalls(one.text());
  ASSERT_NE(calls, nullptr);
  EXPECT_FALSE(callWindow(other.text()));
  EXPECT_FALSE(calls->called());
}

TEST(WindowCall, TheFolderCountsAndNotItsSpelling) {
  const test::TemporaryFolder folder;
  const auto calls = listenForWindowCalls(folder.text());
  ASSERT_NE(calls, nullptr);
  EXPECT_TRUE(callWindow(folder.text() + "/."));
  EXPECT_TRUE(calls->called());
}

TEST(WindowCall, AWindowThatIsGoneIsNotReached) {
  const test::TemporaryFolder folder;
  auto calls = listenForWindowCalls(folder.text());
  ASSERT_NE(calls, nullptr);
  calls.reset();
  EXPECT_FALSE(callWindow(folder.text()));
}

}  // namespace
}  // namespace tellaxis::platform
