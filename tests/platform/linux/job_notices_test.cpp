// Tests of the job notices: renamed files at once, written ones when they have been quiet.
#include "platform/linux/job_notices.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

struct Watched : testing::Test {
  /// Milliseconds until the next file was whole, or until nothing came for a long time.
  double untilWhole(steady_clock::time_point begun) {
    const auto limit = begun + 5s;
    while (count == 0 && steady_clock::now() < limit) std::this_thread::sleep_for(100us);
    return std::chrono::duration<double, std::milli>(steady_clock::now() - begun).count();
  }
  std::string path(const std::string& name) { return (folder / name); }

  test::TemporaryFolder folder;
  test::TraceLog trace;
  std::atomic<int> count = 0;
  LinuxJobNotices notices{[](std::string_view name) { return std::string(name); }, [this] { ++count; }, trace};
};

}  // namespace

TEST_F(Watched, AFileThatWasRenamedInIsWholeAtOnce) {
  folder.write("../job-notices-new", "scontrino");
  notices.watch({path("")});
  const auto begun = steady_clock::now();
  std::filesystem::rename(path("../job-notices-new"), path("scontrino.txt"));
  EXPECT_LT(untilWhole(begun), 1000);
  EXPECT_EQ(count, 1);
  EXPECT_TRUE(notices.isWhole(path("scontrino.txt")));
}

TEST_F(Watched, AFileThatWasWrittenIsWholeWhenItHasBeenQuiet) {
  notices.watch({path("")});
  const auto begun = steady_clock::now();
  folder.write("scontrino.txt", "riga");
  EXPECT_FALSE(notices.isWhole(path("SCONTRINO.TXT")));
  EXPECT_GE(untilWhole(begun), 30);
  EXPECT_TRUE(notices.isWhole(path("scontrino.txt")));
  EXPECT_EQ(count, 1);
}

TEST_F(Watched, AFileThatIsStillOpenIsNotTold) {
  notices.watch({path("")});
  std::ofstream writer(path("scontrino.txt"));
  writer << "riga" << std::flush;
  std::this_thread::sleep_for(150ms);
  EXPECT_EQ(count, 0);
  writer.close();
  untilWhole(steady_clock::now());
  EXPECT_EQ(count, 1);
}

TEST_F(Watched, AWriterThatClosesForEveryLineIsWaitedFor) {
  notices.watch({path("")});
  for (int line = 0; line < 10; ++line) {
    std::ofstream(path("scontrino.txt"), std::ios::app) << "riga\r\n";
    // Where this test was kept from running for longer, the file was quiet in truth.
    const auto written = steady_clock::now();
    const bool whole = notices.isWhole(path("scontrino.txt"));
    if (steady_clock::now() - written < 20ms) {
      EXPECT_FALSE(whole) << line;
    }
    std::this_thread::sleep_for(5ms);
  }
  untilWhole(steady_clock::now());
  EXPECT_GE(count, 1);
}

TEST_F(Watched, AFileThatIsGoneIsNotTold) {
  notices.watch({path("")});
  folder.write("scontrino.txt", "riga");
  std::filesystem::remove(path("scontrino.txt"));
  std::this_thread::sleep_for(100ms);
  EXPECT_EQ(count, 0);
}

TEST_F(Watched, OtherFoldersAreNotTold) {
  std::filesystem::create_directory(path("altra"));
  notices.watch({path("")});
  notices.watch({path("altra/file.txt")});
  folder.write("scontrino.txt", "riga");
  EXPECT_TRUE(notices.isWhole(path("scontrino.txt")));
  folder.write("altra/scontrino.txt", "riga");
  untilWhole(steady_clock::now());
  std::this_thread::sleep_for(60ms);
  EXPECT_EQ(count, 1);
}

TEST_F(Watched, AWaitEndsWithTheNextWholeFile) {
  notices.watch({path("")});
  const auto begun = steady_clock::now();
  std::thread writer([this] { folder.write("risposta.txt", "ok"); });
  notices.waitFor(20s);
  writer.join();
  EXPECT_LT(steady_clock::now() - begun, 10s);
  notices.waitFor(20ms);
  EXPECT_GE(steady_clock::now() - begun, 20ms);
}

TEST_F(Watched, FilesOfAFolderThatIsNotThereCountAsWhole) {
  notices.watch({path("manca/")});
  ASSERT_EQ(trace.lines.size(), 0U) << "a folder that is not there gives no notices, and that is no failure";
  EXPECT_TRUE(notices.isWhole(path("manca/scontrino.txt")));
}

}  // namespace tellaxis::platform
