// Window call: one copy of the program reaching another one's window, by the main folder that it serves.
#include "platform/window_call.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace tellaxis::platform {
namespace {

/// A folder that goes with the test.
class Folder {
 public:
  explicit Folder(const std::string& name)
      : path_(std::filesystem::path(testing::TempDir()) /
              ("window-call-" + name + "-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)))) {
    std::filesystem::create_directories(path_);
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string text() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

TEST(WindowCall, NobodyIsReachedWhereNoWindowListens) {
  const Folder folder("none");
  EXPECT_FALSE(callWindow(folder.text()));
}

TEST(WindowCall, ACallIsHeardOnce) {
  const Folder folder("once");
  const auto calls = listenForWindowCalls(folder.text());
  ASSERT_NE(calls, nullptr);
  EXPECT_FALSE(calls->called());
  EXPECT_TRUE(callWindow(folder.text()));
  EXPECT_TRUE(calls->called());
  EXPECT_FALSE(calls->called());
}

TEST(WindowCall, CallsInARowAreOne) {
  const Folder folder("row");
  const auto calls = listenForWindowCalls(folder.text());
  ASSERT_NE(calls, nullptr);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(callWindow(folder.text()));
  EXPECT_TRUE(calls->called());
  EXPECT_FALSE(calls->called());
}

TEST(WindowCall, OtherMainFoldersHaveWindowsOfTheirOwn) {
  const Folder one("one");
  const Folder other("other");
  const auto calls = listenForWindowCalls(one.text());
  ASSERT_NE(calls, nullptr);
  EXPECT_FALSE(callWindow(other.text()));
  EXPECT_FALSE(calls->called());
}

TEST(WindowCall, TheFolderCountsAndNotItsSpelling) {
  const Folder folder("spelling");
  const auto calls = listenForWindowCalls(folder.text());
  ASSERT_NE(calls, nullptr);
  EXPECT_TRUE(callWindow(folder.text() + "/."));
  EXPECT_TRUE(calls->called());
}

TEST(WindowCall, AWindowThatIsGoneIsNotReached) {
  const Folder folder("gone");
  auto calls = listenForWindowCalls(folder.text());
  ASSERT_NE(calls, nullptr);
  calls.reset();
  EXPECT_FALSE(callWindow(folder.text()));
}

}  // namespace
}  // namespace tellaxis::platform
