// Tests of the files of a Linux computer: moving.
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <atomic>
#include <cstddef>
#include <fstream>
#include <thread>

#include "files_folder.h"

namespace tellaxis::platform {
namespace {

struct Move : LinuxFilesTest {};

/// A folder on another file system than the temporary folder's.

struct OtherDisk {
  fs::path path = fs::path("/dev/shm") / ("tellaxis-test-" + std::to_string(::getpid()));
  OtherDisk() { fs::create_directories(path); }
  ~OtherDisk() { fs::remove_all(path); }
  bool isOther(const fs::path& than) const {
    struct stat here {};
    struct stat there {};
    return ::stat(path.c_str(), &here) == 0 && ::stat(than.c_str(), &there) == 0 && here.st_dev != there.st_dev;
  }
};

TEST_F(Move, GivesAFileAnotherNameAndFolder) {
  makeFolder("Orbis");
  makeFolder("In");
  folder.write("Orbis/Job.txt", "text");
  EXPECT_TRUE(files.move("C:\\ORBIS\\JOB.TXT", "C:\\IN\\JOB.TXT"));
  EXPECT_EQ(folder.read("In/JOB.TXT"), "text");
  EXPECT_FALSE(onDisk("Orbis/Job.txt"));
}

TEST_F(Move, NeverReplacesAFileInWhateverCase) {
  folder.write("from", "new");
  folder.write("to", "old");
  EXPECT_FALSE(files.move("C:\\from", "C:\\to"));
  EXPECT_FALSE(files.move("C:\\from", "C:\\TO"));
  EXPECT_EQ(folder.read("to"), "old");
  EXPECT_THAT(folder.names(), ElementsAre("from", "to"));
  EXPECT_THAT(trace.lines, testing::Each(HasSubstr("esiste gi\xE0")));
}

TEST_F(Move, CanChangeTheCaseOfAName) {
  folder.write("name.txt", "text");
  EXPECT_TRUE(files.move("C:\\name.txt", "C:\\NAME.TXT"));
  EXPECT_THAT(folder.names(), ElementsAre("NAME.TXT"));
}

TEST_F(Move, FailsWhileAnotherHasTheFileOpenForWriting) {
  folder.write("job", "half");
  {
    const Descriptor writer(::open((folder / "job").c_str(), O_WRONLY | O_APPEND));
    EXPECT_FALSE(files.move("C:\\job", "C:\\job2"));
    EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("aperto in scrittura")));
    EXPECT_EQ(::write(writer.number(), " more", 5), 5) << "the writer is not disturbed";
  }
  EXPECT_TRUE(files.move("C:\\job", "C:\\job2"));
  EXPECT_EQ(folder.read("job2"), "half more");
}

TEST_F(Move, IsNotHeldUpByReaders) {
  folder.write("job", "text");
  const Descriptor reader(::open((folder / "job").c_str(), O_RDONLY));
  EXPECT_TRUE(files.move("C:\\job", "C:\\job2"));
}

TEST_F(Move, LeavesAFileThatCannotBeRead) {
  folder.write("job", "text");
  fs::permissions(folder.path("job"), fs::perms(0));
  makeOpenToAll(folder);
  const AsNobody nobody;
  EXPECT_FALSE(files.move("C:\\job", "C:\\job2"));
  EXPECT_TRUE(onDisk("job"));
}

TEST_F(Move, SurvivesWritersThatComeInTheMiddleOfIt) {
  folder.write("a", "text");
  std::atomic<bool> stop = false;
  std::thread writer([&] {
    while (!stop)
      for (const char* name : {"a", "b"}) const Descriptor opened(::open((folder / name).c_str(), O_WRONLY));
  });
  for (int i = 0; i < 2000; ++i)
    if (!files.move("C:\\a", "C:\\b")) files.move("C:\\b", "C:\\a");
  stop = true;
  writer.join();
  EXPECT_TRUE(onDisk("a") != onDisk("b"));
}

TEST_F(Move, LeavesALink) {
  folder.write("real", "text");
  fs::create_symlink("real", folder.path("link"));
  EXPECT_FALSE(files.move("C:\\link", "C:\\link2"));
  EXPECT_THAT(folder.names(), ElementsAre("link", "real"));
}

/// From here on the system knows no rename that replaces nothing, as on older and foreign file systems.
bool forbidRenameWithoutReplacing() {
  sock_filter instructions[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{.len = std::size(instructions), .filter = instructions};
  return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

TEST_F(Move, LeavesNoSecondNameWhereTheFirstCannotBeTakenAway) {
  if (!isRoot()) GTEST_SKIP() << "needs a second user";
  folder.write("job", "text");
  ASSERT_EQ(::chmod((folder / "job").c_str(), 0666), 0);
  makeOpenToAll(folder, S_ISVTX);
  makeOpenToAll(work);
  // In a process of its own, for a filter stays.
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const bool ready = forbidRenameWithoutReplacing() && ::seteuid(65534) == 0;
    ::_exit(!ready ? 2 : files.move("C:\\job", "D:\\job") ? 1 : 0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_TRUE(onDisk("job"));
  EXPECT_THAT(work.names(), IsEmpty());
}

TEST_F(Move, FailsForFoldersPipesAndNothing) {
  makeFolder("sub");
  makePipe("pipe");
  EXPECT_FALSE(files.move("C:\\sub", "C:\\sub2"));
  EXPECT_FALSE(files.move("C:\\pipe", "C:\\pipe2"));
  EXPECT_FALSE(files.move("C:\\none", "C:\\none2"));
  EXPECT_FALSE(files.move("", "C:\\none2"));
  EXPECT_THAT(folder.names(), ElementsAre("pipe", "sub"));
}

TEST_F(Move, CarriesAFileOverToAnotherDisk) {
  const OtherDisk other;
  if (!other.isOther(folder.path(""))) GTEST_SKIP() << "needs two file systems";
  const std::string bytes(200'000, 'x');
  folder.write("job", bytes);
  ASSERT_EQ(::chmod((folder / "job").c_str(), 0640), 0);
  EXPECT_TRUE(files.move("C:\\job", other.path.string() + "\\job"));
  EXPECT_FALSE(onDisk("job"));
  EXPECT_EQ(fs::file_size(other.path / "job"), bytes.size());
  EXPECT_EQ(fs::status(other.path / "job").permissions(), fs::perms(0640));
}

TEST_F(Move, DoesNotReplaceOnAnotherDiskEither) {
  const OtherDisk other;
  if (!other.isOther(folder.path(""))) GTEST_SKIP() << "needs two file systems";
  folder.write("job", "new");
  std::ofstream(other.path / "JOB") << "old";
  EXPECT_FALSE(files.move("C:\\job", other.path.string() + "\\JOB"));
  EXPECT_FALSE(files.move("C:\\job", other.path.string() + "\\job"));
  EXPECT_TRUE(onDisk("job"));
  EXPECT_EQ(fs::file_size(other.path / "JOB"), 3U);
  EXPECT_EQ(std::distance(fs::directory_iterator(other.path), {}), 1);
}

}  // namespace
}  // namespace tellaxis::platform
