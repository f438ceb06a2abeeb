// Tests of the job notices of Windows: a folder that has been quiet is told, and a wait for it costs nothing.
#include "platform/windows/job_notices.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::IsEmpty;

struct WindowsNotices : testing::Test {
  /// True when a whole file was told within a long time.
  bool isTold() {
    const auto limit = steady_clock::now() + 20s;
    while (count == 0 && steady_clock::now() < limit) std::this_thread::sleep_for(1ms);
    return count != 0;
  }

  /// Watches the folder and waits until the system has taken that up.
  void watch() {
    notices.watch({folder / ""});
    std::this_thread::sleep_for(300ms);
  }

  test::TemporaryFolder folder;
  test::TemporaryFolder other;
  test::TraceLog trace;
  std::atomic<int> count = 0;
  WindowsJobNotices notices{[this] { ++count; }, trace};
};

TEST_F(WindowsNotices, AFileThatWasRenamedInIsToldWhenTheFolderHasBeenQuiet) {
  const std::string unfinished = other.write("scontrino.tmp", "scontrino");
  watch();
  const auto begun = steady_clock::now();
  std::filesystem::rename(unfinished, folder.path("scontrino.txt"));
  ASSERT_TRUE(isTold());
  EXPECT_GE(steady_clock::now() - begun, quietTime - 5ms);
  EXPECT_TRUE(notices.isWhole(folder / "scontrino.txt"));
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(WindowsNotices, AFileThatWasWrittenIsWholeWhenItHasBeenQuiet) {
  watch();
  folder.write("scontrino.txt", "riga");
  const auto written = steady_clock::now();
  const bool whole = notices.isWhole(folder / "scontrino.txt");
  // Where this test was kept from running for longer, the file was quiet in truth.
  if (steady_clock::now() - written < 10ms) {
    EXPECT_FALSE(whole);
  }
  ASSERT_TRUE(isTold());
  std::this_thread::sleep_for(quietTime);
  EXPECT_TRUE(notices.isWhole(folder / "scontrino.txt"));
}

TEST_F(WindowsNotices, AWaitEndsWithTheNextWholeFile) {
  watch();
  const auto begun = steady_clock::now();
  std::thread writer([this] {
    std::this_thread::sleep_for(50ms);
    folder.write("risposta.txt", "ok");
  });
  notices.waitFor(60s);
  writer.join();
  EXPECT_LT(steady_clock::now() - begun, 30s);
}

TEST_F(WindowsNotices, AWaitInVainLastsAsLongAsItIsTold) {
  watch();
  const auto begun = steady_clock::now();
  notices.waitFor(400ms);
  EXPECT_GE(steady_clock::now() - begun, 380ms);
}

TEST_F(WindowsNotices, OtherFoldersAreNotTold) {
  watch();
  notices.watch({other / ""});
  std::this_thread::sleep_for(300ms);
  folder.write("scontrino.txt", "riga");
  std::this_thread::sleep_for(300ms);
  EXPECT_EQ(count, 0);
  other.write("scontrino.txt", "riga");
  EXPECT_TRUE(isTold());
}

TEST_F(WindowsNotices, AFolderThatIsNotThereIsToldAndEverythingInItIsWhole) {
  notices.watch({folder / "manca\\"});
  std::this_thread::sleep_for(300ms);
  EXPECT_THAT(trace.lines, testing::SizeIs(1));
  EXPECT_TRUE(notices.isWhole(folder / "manca\\scontrino.txt"));
}

}  // namespace
}  // namespace tellaxis::platform
