// Tests of batches: writes that reach the disk together.
#include <sys/wait.h>
#include <cerrno>
#include <csignal>

#include "platform/linux/kernel/reason.h"
#include "platform/linux/profiles/ini_folder.h"

namespace tellaxis::platform {
namespace {

using Batch = IniFolder;

TEST_F(Batch, IsSeenByReadsAtOnceAndByTheDiskAtItsEnd) {
  put("[A]\r\nk=old\r\n");
  {
    const ProfileBatch batch(profiles_);
    EXPECT_TRUE(set("A", "k", "new"));
    EXPECT_TRUE(set("B", "x", " 'y' "));
    EXPECT_EQ(get("A", "k"), "new");
    EXPECT_EQ(get("B", "x"), "y");
    EXPECT_EQ(content(), "[A]\r\nk=old\r\n");
  }
  EXPECT_EQ(content(), "[A]\r\nk=new\r\n[B]\r\nx= 'y' \r\n");
  EXPECT_EQ(get("A", "k"), "new");
}

TEST_F(Batch, OfAMissingFileCreatesItAtItsEnd) {
  {
    const ProfileBatch batch(profiles_);
    EXPECT_TRUE(set("A", "k", "v"));
    EXPECT_EQ(get("A", "k"), "v");
    EXPECT_TRUE(names().empty());
  }
  EXPECT_EQ(content(), "[A]\r\nk=v\r\n");
}

TEST_F(Batch, KeepsWhatAnotherProgramWroteMeanwhile) {
  put("[A]\r\nk=old\r\n");
  {
    const ProfileBatch batch(profiles_);
    EXPECT_TRUE(set("A", "k", "new"));
    put("[A]\r\nk=old\r\nother=1\r\n");
    EXPECT_EQ(get("A", "other"), "1");
  }
  EXPECT_EQ(content(), "[A]\r\nk=new\r\nother=1\r\n");
}

TEST_F(Batch, LeavesTheFileAsItWasWhenTheProgramIsKilled) {
  put("[A]\r\nk=old\r\n");
  const pid_t child = fork();
  if (child == 0) {
    profiles_.beginBatch();
    set("A", "k", "new");
    raise(SIGKILL);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(content(), "[A]\r\nk=old\r\n");
  EXPECT_EQ(names(), std::vector<std::string>{"_Test.ini"});
}

TEST_F(Batch, DoesNotTouchAFileThatAlreadySaysSo) {
  put("[A]\r\nk=v\r\n");
  const struct stat before = facts();
  {
    const ProfileBatch batch(profiles_);
    EXPECT_TRUE(set("A", "k", "v"));
  }
  EXPECT_EQ(facts().st_ino, before.st_ino);
}

TEST_F(Batch, ThatCannotBeStoredIsReportedOnceAFile) {
  file_ = folder_ / "missing/_Test.ini";
  {
    const ProfileBatch batch(profiles_);
    EXPECT_TRUE(set("A", "k", "v"));
    EXPECT_TRUE(set("A", "x", "y"));
  }
  EXPECT_EQ(trace_.lines, std::vector<std::string>{report("scrittura INI", reasonOf(ENOENT))});
}

}  // namespace
}  // namespace tellaxis::platform
