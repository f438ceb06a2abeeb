// Tests of finding names without regard to case in folders that change under way.
#include "platform/linux/files/folder_names.h"

#include <gtest/gtest.h>
#include <strings.h>

#include <atomic>
#include <chrono>
#include <random>
#include <set>
#include <thread>

#include "platform/temporary_folder.h"

namespace tellaxis::platform {
namespace {

namespace fs = std::filesystem;

struct FolderNamesTest : testing::Test {
  static constexpr std::chrono::milliseconds rest{30};

  test::TemporaryFolder folder;
  FolderNames names{rest};

  static void letRest() { std::this_thread::sleep_for(rest + std::chrono::milliseconds(5)); }

  /// A folder that has not changed for so long that its names are kept when it is first asked for one.
  std::string restingFolder(const std::string& name) {
    fs::create_directories(folder.path(name));
    for (int i = 0; i < 100; ++i) folder.write(name + "/filler" + std::to_string(i), "");
    letRest();
    return folder / (name + "/");
  }
  std::string otherSpelling(const std::string& in, const std::string& name) {
    const auto match = names.find(in, name);
    if (!match) return "(folder not read)";
    return match->asSpelled ? name : match->otherwise.value_or("(none)");
  }
};

TEST_F(FolderNamesTest, AFolderThatRestsAnswersAsOneThatChangesDoes) {
  const std::string resting = restingFolder("big");
  const std::string small = folder / "small/";
  fs::create_directories(small);
  for (const std::string& in : {resting, small})
    for (const char* name : {"Città.txt", "job.TXT", "Job.TXT", "citt\xE0.bin", "日本"}) std::ofstream(in + name) << "";
  for (const std::string& in : {resting, small})
    for (int again = 0; again < 3; ++again) {
      if (in == resting) letRest();
      EXPECT_EQ(otherSpelling(in, "JOB.txt"), "Job.TXT");
      EXPECT_EQ(otherSpelling(in, "job.TXT"), "job.TXT");
      EXPECT_EQ(otherSpelling(in, "CITTÀ.TXT"), "Città.txt");
      EXPECT_EQ(otherSpelling(in, "CITTÀ.BIN"), "citt\xE0.bin");
      EXPECT_EQ(otherSpelling(in, "other"), "(none)");
      EXPECT_EQ(otherSpelling(in, "日"), "(none)");
    }
}

TEST_F(FolderNamesTest, OnlyWhatWasReadIsKnownToLackAnything) {
  const std::string resting = restingFolder("big");
  EXPECT_FALSE(names.isKnownToLack(resting, "none"));
  EXPECT_EQ(otherSpelling(resting, "none"), "(none)");
  EXPECT_TRUE(names.isKnownToLack(resting, "none"));
  EXPECT_FALSE(names.isKnownToLack(resting, "FILLER7"));
}

TEST_F(FolderNamesTest, EveryChangeIsNoticedAtOnce) {
  const std::string resting = restingFolder("big");
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
        std::ofstream(resting + name) << "";
        present.insert(name);
        break;
      case 1:
        fs::remove(resting + name, ignored);
        present.erase(name);
        break;
      case 2:
        if (present.erase(name) == 0) break;
        fs::rename(resting + name, resting + target, ignored);
        present.insert(target);
        break;
      case 3:
        std::ofstream(folder / "other/x") << "";
        fs::rename(folder / "other/x", resting + name, ignored);
        present.insert(name);
        break;
      default: fs::rename(resting + name, folder / "other/y", ignored); present.erase(name);
    }
    if (step % 50 == 0) letRest();
    const std::string asked = spelling(static_cast<int>(random() % 20));
    std::string expected = "(none)";
    for (const std::string& candidate : present)
      if (candidate.size() == asked.size() && ::strcasecmp(candidate.c_str(), asked.c_str()) == 0 &&
          expected == "(none)")
        expected = candidate;
    if (present.count(asked) != 0) expected = asked;
    ASSERT_EQ(otherSpelling(resting, asked), expected) << step;
  }
}

TEST_F(FolderNamesTest, AFolderThatTookThePlaceOfAnotherIsReadAnew) {
  const std::string resting = restingFolder("big");
  std::ofstream(resting + "Old") << "";
  EXPECT_EQ(otherSpelling(resting, "OLD"), "Old");
  fs::rename(folder.path("big"), folder.path("away"));
  EXPECT_EQ(otherSpelling(resting, "OLD"), "(folder not read)");
  restingFolder("big");
  EXPECT_EQ(otherSpelling(resting, "OLD"), "(none)");
  EXPECT_EQ(otherSpelling(resting, "FILLER1"), "filler1");
  fs::remove_all(folder.path("big"));
  EXPECT_FALSE(names.isKnownToLack(resting, "x"));
  EXPECT_EQ(otherSpelling(resting, "FILLER1"), "(folder not read)");
}

TEST_F(FolderNamesTest, ALinkOnTheWayThatChangesIsNoticed) {
  restingFolder("one/big");
  const std::string two = restingFolder("two/big");
  std::ofstream(two + "Two") << "";
  fs::create_directory_symlink("one", folder.path("link"));
  const std::string resting = folder / "link/big/";
  EXPECT_EQ(otherSpelling(resting, "TWO"), "(none)");
  fs::remove(folder.path("link"));
  fs::create_directory_symlink("two", folder.path("link"));
  EXPECT_EQ(otherSpelling(resting, "TWO"), "Two");
}

TEST_F(FolderNamesTest, OneFolderUnderTwoPathsIsKeptRight) {
  const std::string resting = restingFolder("big");
  fs::create_directory_symlink("big", folder.path("link"));
  const std::string link = folder / "link/";
  for (const std::string& path : {resting, link}) EXPECT_EQ(otherSpelling(path, "NEW"), "(none)");
  std::ofstream(resting + "new") << "";
  for (const std::string& path : {resting, link}) EXPECT_EQ(otherSpelling(path, "NEW"), "new");
}

TEST_F(FolderNamesTest, AFolderWithMoreNamesThanAreKeptIsReadAnew) {
  const std::string huge = folder / "huge/";
  fs::create_directories(huge);
  for (int i = 0; i < 10'050; ++i) std::ofstream(huge + "Filler" + std::to_string(i)) << "";
  letRest();
  for (int again = 0; again < 2; ++again) {
    EXPECT_EQ(otherSpelling(huge, "FILLER10049"), "Filler10049");
    EXPECT_EQ(otherSpelling(huge, "NONE"), "(none)");
    EXPECT_FALSE(names.isKnownToLack(huge, "NONE"));
  }
}

TEST_F(FolderNamesTest, OnlyAFolderThatHasRestedLongEnoughIsKept) {
  const std::string resting = restingFolder("resting");
  EXPECT_EQ(otherSpelling(resting, "none"), "(none)");
  FolderNames longer(std::chrono::hours(1));
  EXPECT_FALSE(longer.find(resting, "none").value().asSpelled);
  EXPECT_FALSE(longer.isKnownToLack(resting, "none"));
  EXPECT_TRUE(names.isKnownToLack(resting, "none"));
}

TEST_F(FolderNamesTest, AnyNumberOfFoldersIsAnsweredRight) {
  std::vector<std::string> folders;
  for (int i = 0; i < 20; ++i) folders.push_back(restingFolder("big" + std::to_string(i)));
  for (int again = 0; again < 2; ++again)
    for (const std::string& resting : folders) {
      EXPECT_EQ(otherSpelling(resting, "NEW" + std::to_string(again)), "(none)");
      std::ofstream(resting + "new" + std::to_string(again)) << "";
      EXPECT_EQ(otherSpelling(resting, "NEW" + std::to_string(again)), "new" + std::to_string(again));
    }
}

TEST_F(FolderNamesTest, ServesSeveralThreads) {
  const std::string resting = restingFolder("big");
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread)
    threads.emplace_back([&, thread] {
      const std::string name = "mine" + std::to_string(thread);
      for (int i = 0; i < 200; ++i) {
        std::ofstream(resting + name) << "";
        if (otherSpelling(resting, "MINE" + std::to_string(thread)) != name) ++wrong;
        fs::remove(resting + name);
        if (otherSpelling(resting, "MINE" + std::to_string(thread)) != "(none)") ++wrong;
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace tellaxis::platform
