// Tests of finding names without regard to case in folders that change under way.
#include "platform/linux/files/folder_names.h"

#include <gtest/gtest.h>
#include <strings.h>

#include <atomic>
#include <random>
#include <set>
#include <thread>

#include "platform/temporary_folder.h"

namespace tellaxis::platform {
namespace {

namespace fs = std::filesystem;

struct FolderNamesTest : testing::Test {
  test::TemporaryFolder folder;
  FolderNames names;

  /// A folder with so many files that its names are kept.
  std::string bigFolder(const std::string& name) {
    fs::create_directories(folder.path(name));
    for (int i = 0; i < 100; ++i) folder.write(name + "/filler" + std::to_string(i), "");
    return folder / (name + "/");
  }
  std::string otherSpelling(const std::string& in, const std::string& name) {
    const auto match = names.find(in, name);
    if (!match) return "(folder not read)";
    return match->asSpelled ? name : match->otherwise.value_or("(none)");
  }
};

TEST_F(FolderNamesTest, ABigFolderAnswersAsASmallOneDoes) {
  const std::string big = bigFolder("big");
  const std::string small = folder / "small/";
  fs::create_directories(small);
  for (const std::string& in : {big, small})
    for (const char* name : {"Città.txt", "job.TXT", "Job.TXT", "citt\xE0.bin", "日本"}) std::ofstream(in + name) << "";
  for (const std::string& in : {big, small})
    for (int again = 0; again < 3; ++again) {
      EXPECT_EQ(otherSpelling(in, "JOB.txt"), "Job.TXT");
      EXPECT_EQ(otherSpelling(in, "job.TXT"), "job.TXT");
      EXPECT_EQ(otherSpelling(in, "CITTÀ.TXT"), "Città.txt");
      EXPECT_EQ(otherSpelling(in, "CITTÀ.BIN"), "citt\xE0.bin");
      EXPECT_EQ(otherSpelling(in, "other"), "(none)");
      EXPECT_EQ(otherSpelling(in, "日"), "(none)");
    }
}

TEST_F(FolderNamesTest, OnlyWhatWasReadIsKnownToLackAnything) {
  const std::string big = bigFolder("big");
  EXPECT_FALSE(names.isKnownToLack(big, "none"));
  EXPECT_EQ(otherSpelling(big, "none"), "(none)");
  EXPECT_TRUE(names.isKnownToLack(big, "none"));
  EXPECT_FALSE(names.isKnownToLack(big, "FILLER7"));
}

TEST_F(FolderNamesTest, EveryChangeIsNoticedAtOnce) {
  const std::string big = bigFolder("big");
  fs::create_directories(folder.path("other"));
  std::mt19937 random(1);
  std::set<std::string> present;
  const auto spelling = [&](int number) {
    std::string name = "name" + std::to_string(number);
    for (char& c : name)
      if (random() % 2 == 0) c = static_cast<char>(std::toupper(c));
    return name;
  };
  for (int step = 0; step < 5000; ++step) {
    const std::string name = spelling(static_cast<int>(random() % 20));
    const std::string target = spelling(static_cast<int>(random() % 20));
    std::error_code ignored;
    switch (random() % 5) {
      case 0:
        std::ofstream(big + name) << "";
        present.insert(name);
        break;
      case 1:
        fs::remove(big + name, ignored);
        present.erase(name);
        break;
      case 2:
        if (present.erase(name) == 0) break;
        fs::rename(big + name, big + target, ignored);
        present.insert(target);
        break;
      case 3:
        std::ofstream(folder / "other/x") << "";
        fs::rename(folder / "other/x", big + name, ignored);
        present.insert(name);
        break;
      default: fs::rename(big + name, folder / "other/y", ignored); present.erase(name);
    }
    const std::string asked = spelling(static_cast<int>(random() % 20));
    std::string expected = "(none)";
    for (const std::string& candidate : present)
      if (candidate.size() == asked.size() && ::strcasecmp(candidate.c_str(), asked.c_str()) == 0 &&
          expected == "(none)")
        expected = candidate;
    if (present.count(asked) != 0) expected = asked;
    ASSERT_EQ(otherSpelling(big, asked), expected) << step;
  }
}

TEST_F(FolderNamesTest, AFolderThatTookThePlaceOfAnotherIsReadAnew) {
  const std::string big = bigFolder("big");
  std::ofstream(big + "Old") << "";
  EXPECT_EQ(otherSpelling(big, "OLD"), "Old");
  fs::rename(folder.path("big"), folder.path("away"));
  EXPECT_EQ(otherSpelling(big, "OLD"), "(folder not read)");
  bigFolder("big");
  EXPECT_EQ(otherSpelling(big, "OLD"), "(none)");
  EXPECT_EQ(otherSpelling(big, "FILLER1"), "filler1");
  fs::remove_all(folder.path("big"));
  EXPECT_FALSE(names.isKnownToLack(big, "x"));
  EXPECT_EQ(otherSpelling(big, "FILLER1"), "(folder not read)");
}

TEST_F(FolderNamesTest, ALinkOnTheWayThatChangesIsNoticed) {
  bigFolder("one/big");
  const std::string two = bigFolder("two/big");
  std::ofstream(two + "Two") << "";
  fs::create_directory_symlink("one", folder.path("link"));
  const std::string big = folder / "link/big/";
  EXPECT_EQ(otherSpelling(big, "TWO"), "(none)");
  fs::remove(folder.path("link"));
  fs::create_directory_symlink("two", folder.path("link"));
  EXPECT_EQ(otherSpelling(big, "TWO"), "Two");
}

TEST_F(FolderNamesTest, OneFolderUnderTwoPathsIsKeptRight) {
  const std::string big = bigFolder("big");
  fs::create_directory_symlink("big", folder.path("link"));
  const std::string link = folder / "link/";
  for (const std::string& path : {big, link}) EXPECT_EQ(otherSpelling(path, "NEW"), "(none)");
  std::ofstream(big + "new") << "";
  for (const std::string& path : {big, link}) EXPECT_EQ(otherSpelling(path, "NEW"), "new");
}

TEST_F(FolderNamesTest, MoreNoticesThanTheSystemKeepsDoNoHarm) {
  const std::string big = bigFolder("big");
  EXPECT_EQ(otherSpelling(big, "LAST"), "(none)");
  std::size_t kept = 16'384;
  std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> kept;
  for (std::size_t i = 0; i < kept / 2 + 100; ++i) {
    fs::rename(big + "filler1", big + "Filler1");
    fs::rename(big + "Filler1", big + "filler1");
  }
  std::ofstream(big + "last") << "";
  EXPECT_EQ(otherSpelling(big, "LAST"), "last");
  std::ofstream(big + "more") << "";
  EXPECT_EQ(otherSpelling(big, "MORE"), "more");
}

TEST_F(FolderNamesTest, AnyNumberOfBigFoldersIsAnsweredRight) {
  std::vector<std::string> folders;
  for (int i = 0; i < 20; ++i) folders.push_back(bigFolder("big" + std::to_string(i)));
  for (int again = 0; again < 2; ++again)
    for (const std::string& big : folders) {
      EXPECT_EQ(otherSpelling(big, "NEW" + std::to_string(again)), "(none)");
      std::ofstream(big + "new" + std::to_string(again)) << "";
      EXPECT_EQ(otherSpelling(big, "NEW" + std::to_string(again)), "new" + std::to_string(again));
    }
}

TEST_F(FolderNamesTest, ServesSeveralThreads) {
  const std::string big = bigFolder("big");
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread)
    threads.emplace_back([&, thread] {
      const std::string name = "mine" + std::to_string(thread);
      for (int i = 0; i < 200; ++i) {
        std::ofstream(big + name) << "";
        if (otherSpelling(big, "MINE" + std::to_string(thread)) != name) ++wrong;
        fs::remove(big + name);
        if (otherSpelling(big, "MINE" + std::to_string(thread)) != "(none)") ++wrong;
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace tellaxis::platform
