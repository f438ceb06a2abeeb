// Profiles: reading and writing INI files on the disk, one program alone.
#include <sys/resource.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>

#include "platform/linux/kernel/reason.h"
#include "platform/linux/profiles/ini_folder.h"

namespace tellaxis::platform {
namespace {

using Profile = IniFolder;

TEST_F(Profile, CreatesAMissingFileButNoFolder) {
  EXPECT_TRUE(set("A", "k", "v"));
  EXPECT_EQ(content(), "[A]\r\nk=v\r\n");
  file_ = folder_ / "missing/_Test.ini";
  EXPECT_FALSE(set("A", "k", "v"));
  EXPECT_FALSE(profiles_.write("A", "k", std::nullopt, file_));
  EXPECT_EQ(trace_.lines, std::vector<std::string>(2, report("scrittura INI", reasonOf(ENOENT))));
  EXPECT_EQ(names(), std::vector<std::string>{"_Test.ini"});
}

TEST_F(Profile, GivesANewFileTheModeOfTheUmask) {
  const mode_t before = umask(027);
  EXPECT_TRUE(set("A", "k", "v"));
  umask(before);
  EXPECT_EQ(facts().st_mode & 07777, 0640u);
}

TEST_F(Profile, AnswersWithTheDefaultForWhateverIsAbsent) {
  EXPECT_EQ(get("A", "k"), "DEF");
  put("[A]\r\nk=v\r\n");
  EXPECT_EQ(get("B", "k"), "DEF");
  EXPECT_EQ(get("A", "x"), "DEF");
  EXPECT_EQ(profiles_.read("A", "k", "DEF", 255, folder_ / "missing/_Test.ini"), "DEF");
  EXPECT_EQ(profiles_.read("A", "k", "DEF", 255, ""), "DEF");
  EXPECT_TRUE(trace_.lines.empty());
}

TEST_F(Profile, ReadsAtMostOneByteLessThanTheSize) {
  const std::string value(300, 'x');
  EXPECT_TRUE(set("A", "k", value));
  EXPECT_EQ(get("A", "k"), value.substr(0, 254));
  EXPECT_EQ(profiles_.read("A", "none", value, 255, file_), value.substr(0, 254));
  EXPECT_EQ(profiles_.read("A", "k", "", 1, file_), "");
  EXPECT_EQ(profiles_.read("A", "k", "", 0, file_), "");
}

TEST_F(Profile, EndsEveryTextAtItsFirstNul) {
  using namespace std::string_view_literals;
  EXPECT_TRUE(set("A\0x"sv, "k\0x"sv, "v\0x"sv));
  EXPECT_EQ(content(), "[A]\r\nk=v\r\n");
  EXPECT_EQ(get("A\0y"sv, "k\0y"sv), "v");
  EXPECT_EQ(profiles_.read("A", "none", "d\0x"sv, 255, file_), "d");
}

TEST_F(Profile, KeepsModeAndOwner) {
  put("[A]\r\nk=v\r\n");
  ASSERT_EQ(chmod(file_.c_str(), 0664), 0);
  if (geteuid() == 0) {
    ASSERT_EQ(chown(file_.c_str(), 1234, 2345), 0);
  }
  const struct stat before = facts();
  EXPECT_TRUE(set("A", "k", "w"));
  const struct stat after = facts();
  EXPECT_NE(after.st_ino, before.st_ino);
  EXPECT_EQ(after.st_mode, before.st_mode);
  EXPECT_EQ(after.st_uid, before.st_uid);
  EXPECT_EQ(after.st_gid, before.st_gid);
  EXPECT_EQ(names(), std::vector<std::string>{"_Test.ini"});
}

TEST_F(Profile, DoesNotTouchAFileThatAlreadySaysSo) {
  put("; c\n[A]\n k = v \n");
  const struct stat before = facts();
  const auto folderBefore = std::filesystem::last_write_time(folder_ / "");
  EXPECT_TRUE(set("a", "K", "v"));
  EXPECT_TRUE(profiles_.write("A", "none", std::nullopt, file_));
  EXPECT_TRUE(profiles_.write("B", std::nullopt, std::nullopt, file_));
  const struct stat after = facts();
  EXPECT_EQ(after.st_ino, before.st_ino);
  EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
  EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
  EXPECT_EQ(after.st_ctim.tv_nsec, before.st_ctim.tv_nsec);
  EXPECT_EQ(std::filesystem::last_write_time(folder_ / ""), folderBefore);
}

TEST_F(Profile, FollowsALinkAndReplacesItsTarget) {
  const std::string other = folder_ / "other";
  ASSERT_TRUE(std::filesystem::create_directory(other));
  std::filesystem::create_symlink("other/second.ini", file_);
  std::filesystem::create_symlink(other + "/real.ini", other + "/second.ini");
  EXPECT_EQ(get("A", "k"), "DEF");
  EXPECT_TRUE(set("A", "k", "v"));
  EXPECT_TRUE(set("A", "k", "w"));
  EXPECT_TRUE(std::filesystem::is_symlink(file_));
  EXPECT_TRUE(std::filesystem::is_symlink(other + "/second.ini"));
  EXPECT_EQ(folder_.read("other/real.ini"), "[A]\r\nk=w\r\n");
}

TEST_F(Profile, FailsOnAnEndlessLink) {
  std::filesystem::create_symlink("_Test.ini", file_);
  EXPECT_EQ(get("A", "k"), "DEF");
  EXPECT_FALSE(set("A", "k", "v"));
}

TEST_F(Profile, TakesAFolderForNoFile) {
  ASSERT_TRUE(std::filesystem::create_directory(file_));
  EXPECT_EQ(get("A", "k"), "DEF");
  EXPECT_FALSE(set("A", "k", "v"));
  EXPECT_EQ(trace_.lines.size(), 2u);
  EXPECT_EQ(names(), std::vector<std::string>{"_Test.ini"});
}

TEST_F(Profile, TakesAPipeForNoFile) {
  ASSERT_EQ(mkfifo(file_.c_str(), 0666), 0);
  EXPECT_EQ(get("A", "k"), "DEF");
  EXPECT_FALSE(set("A", "k", "v"));
  EXPECT_TRUE(S_ISFIFO(facts().st_mode));
}

TEST_F(Profile, TakesADeviceForNoFile) {
  EXPECT_EQ(profiles_.read("A", "k", "DEF", 255, "/dev/zero"), "DEF");
  EXPECT_FALSE(profiles_.write("A", "k", "v", "/dev/null"));
}

/// Runs `check` as a user without rights over others' files.
void withoutPrivileges(const std::string& folder, const std::function<void()>& check) {
  const bool privileged = geteuid() == 0;
  if (privileged) {
    ASSERT_EQ(chmod(folder.c_str(), 0777), 0);
    ASSERT_EQ(seteuid(65534), 0);
  }
  check();
  if (privileged) {
    ASSERT_EQ(seteuid(0), 0);
  }
}

TEST_F(Profile, AnswersWithTheDefaultWhereItMayNotRead) {
  put("[A]\r\nk=v\r\n");
  ASSERT_EQ(chmod(file_.c_str(), 0), 0);
  withoutPrivileges(folder_ / "", [&] {
    EXPECT_EQ(get("A", "k"), "DEF");
    EXPECT_FALSE(set("A", "k", "w"));
  });
  EXPECT_EQ(content().empty() ? 0u : content().size(), geteuid() == 0 ? 10u : 0u);
  EXPECT_EQ(trace_.lines.size(), 2u);
}

TEST_F(Profile, LeavesAFileThatIsReadOnly) {
  put("[A]\r\nk=v\r\n");
  ASSERT_EQ(chmod(file_.c_str(), 0444), 0);
  withoutPrivileges(folder_ / "", [&] {
    EXPECT_FALSE(set("A", "k", "w"));
    EXPECT_TRUE(set("A", "k", "v"));
  });
  EXPECT_EQ(content(), "[A]\r\nk=v\r\n");
  EXPECT_EQ(names(), std::vector<std::string>{"_Test.ini"});
}

TEST_F(Profile, ServesAFileOfAnotherUserOfItsGroup) {
  put("[A]\r\nk=v\r\n");
  ASSERT_EQ(chmod(file_.c_str(), 0666), 0);
  // Nobody has written to it for a while.
  std::filesystem::last_write_time(file_, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  withoutPrivileges(folder_ / "", [&] { EXPECT_TRUE(set("A", "k", "w")); });
  EXPECT_EQ(get("A", "k"), "w");
  EXPECT_EQ(facts().st_mode & 07777, 0666u);
  EXPECT_EQ(facts().st_gid, getegid());
}

TEST_F(Profile, LeavesAFileWhoseGroupItCannotKeep) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a file away";
  put("[A]\r\nk=v\r\n");
  ASSERT_EQ(chmod(file_.c_str(), 0666), 0);
  ASSERT_EQ(chown(file_.c_str(), 1234, 2345), 0);
  withoutPrivileges(folder_ / "", [&] {
    EXPECT_EQ(get("A", "k"), "v");
    EXPECT_FALSE(set("A", "k", "w"));
  });
  EXPECT_EQ(trace_.lines, std::vector<std::string>{report("scrittura INI", reasonOf(EPERM))});
  EXPECT_EQ(content(), "[A]\r\nk=v\r\n");
  EXPECT_EQ(names(), std::vector<std::string>{"_Test.ini"});
}

TEST_F(Profile, HandlesALineOfTenMegabytes) {
  std::string line;
  line.resize(10'000'000, 'x');
  put("[A]\r\nlong=" + line + "\r\nk=v\r\n");
  EXPECT_EQ(get("A", "k"), "v");
  EXPECT_EQ(get("A", "long"), line.substr(0, 254));
  EXPECT_TRUE(set("A", "k", "w"));
  EXPECT_TRUE(content() == "[A]\r\nlong=" + line + "\r\nk=w\r\n");
}

TEST_F(Profile, ReadsFilesAroundTheSizeOfItsBuffer) {
  for (const std::size_t size : {16383u, 16384u, 16385u, 32768u}) {
    const std::string tail = "\r\n[A]\r\nk=v";
    put(";" + std::string(size - tail.size() - 1, 'c') + tail);
    ASSERT_EQ(std::filesystem::file_size(file_), size);
    EXPECT_EQ(get("A", "k"), "v") << size;
  }
}

TEST_F(Profile, RefusesAFileThatNoSettingsCanFill) {
  put("[A]\r\nk=v\r\n");
  std::filesystem::resize_file(file_, std::uintmax_t{1} << 40);
  EXPECT_EQ(get("A", "k"), "DEF");
  EXPECT_FALSE(set("A", "k", "w"));
  EXPECT_EQ(std::filesystem::file_size(file_), std::uintmax_t{1} << 40);
}

TEST_F(Profile, ReplacesWhatAKilledWriterLeft) {
  put("[A]\r\nk=v\r\n");
  std::ofstream(folder_ / ".profilo-nuovo.tmp") << "half";
  EXPECT_TRUE(set("A", "k", "w"));
  EXPECT_EQ(content(), "[A]\r\nk=w\r\n");
  EXPECT_EQ(names(), std::vector<std::string>{"_Test.ini"});
}

TEST_F(Profile, FailsWithoutASection) {
  put("[A]\r\nk=v\r\n");
  EXPECT_FALSE(profiles_.write(std::nullopt, "k", "w", file_));
  EXPECT_EQ(trace_.lines, std::vector<std::string>{report("scrittura INI", "manca la sezione")});
}

TEST_F(Profile, WorksInTheCurrentFolder) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_ / "");
  EXPECT_TRUE(profiles_.write("A", "k", "v", "_Test.ini"));
  EXPECT_EQ(profiles_.read("A", "k", "", 255, "_Test.ini"), "v");
  std::filesystem::current_path(before);
  EXPECT_EQ(content(), "[A]\r\nk=v\r\n");
}

TEST_F(Profile, LeavesTheOldFileWhereTheDiskIsFull) {
  put("[A]\r\nk=v\r\n");
  const struct rlimit before = [] {
    struct rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    return limit;
  }();
  struct rlimit small = before;
  small.rlim_cur = 1000;
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  EXPECT_FALSE(set("A", "k", std::string(5000, 'x')));
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(content(), "[A]\r\nk=v\r\n");
  EXPECT_EQ(names(), std::vector<std::string>{"_Test.ini"});
}

}  // namespace
}  // namespace tellaxis::platform
