// Tests of the files of a Linux computer: removing.
#include <thread>

#include "files_folder.h"

namespace tellaxis::platform {
namespace {

struct Remove : LinuxFilesTest {};

struct RemoveAll : LinuxFilesTest {};

TEST_F(Remove, DeletesOneFileInAnyCase) {
  folder.write("Job.txt", "");
  EXPECT_TRUE(files.remove("C:\\JOB.TXT"));
  EXPECT_FALSE(files.remove("C:\\JOB.TXT"));
  EXPECT_FALSE(files.remove(""));
  EXPECT_THAT(trace.lines, SizeIs(2));
}

TEST_F(Remove, DeletesALinkAndNotWhatItLeadsTo) {
  folder.write("real", "text");
  fs::create_symlink("real", folder.path("link"));
  EXPECT_TRUE(files.remove("C:\\link"));
  EXPECT_THAT(folder.names(), ElementsAre("real"));
}

TEST_F(Remove, NeverDeletesAFolder) {
  makeFolder("sub");
  EXPECT_FALSE(files.remove("C:\\sub"));
  EXPECT_TRUE(onDisk("sub"));
}

TEST_F(Remove, FailsWhileAWriterHoldsTheFile) {
  folder.write("answer", "OK");
  {
    const Descriptor writer(::open((folder / "answer").c_str(), O_WRONLY));
    EXPECT_FALSE(files.remove("C:\\answer"));
  }
  EXPECT_TRUE(onDisk("answer"));
  EXPECT_TRUE(files.remove("C:\\answer"));
}

TEST_F(Remove, WaitsAMomentForTheWriterOfAnAnswer) {
  folder.write("answer", "OK");
  std::thread driver([writer = Descriptor(::open((folder / "answer").c_str(), O_WRONLY))] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  });
  EXPECT_TRUE(files.remove("C:\\answer"));
  driver.join();
}

TEST_F(RemoveAll, LeavesSubFoldersAndHiddenFilesAndFollowsNoLink) {
  makeFolder("outside");
  folder.write("outside/precious", "text");
  makeFolder("IN/sub");
  folder.write("IN/sub/inner", "");
  folder.write("IN/.hidden", "");
  folder.write("IN/job", "");
  folder.write("IN/日本", "");
  fs::create_symlink("../outside", folder.path("IN/to-folder"));
  fs::create_symlink("../outside/precious", folder.path("IN/to-file"));
  fs::create_symlink("nowhere", folder.path("IN/to-nothing"));
  makePipe("IN/pipe");
  EXPECT_TRUE(files.removeAll("C:\\in\\"));
  EXPECT_TRUE(onDisk("IN/sub/inner"));
  EXPECT_TRUE(onDisk("IN/.hidden"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path("IN")), {}), 2);
  EXPECT_EQ(folder.read("outside/precious"), "text");
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(RemoveAll, FailsWithoutTheFolder) {
  EXPECT_FALSE(files.removeAll("C:\\none"));
  EXPECT_FALSE(files.removeAll(""));
  EXPECT_THAT(trace.lines, SizeIs(2));
}

TEST_F(RemoveAll, SaysSoWhenAFileWasLeft) {
  makeFolder("IN");
  folder.write("IN/job", "");
  fs::permissions(folder.path("IN"), fs::perms(0555));
  const AsNobody nobody;
  EXPECT_FALSE(files.removeAll("C:\\IN"));
  EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("accesso negato")));
}

struct RemoveFolder : LinuxFilesTest {};

TEST_F(RemoveFolder, TakesAnEmptyFolderInAnyCase) {
  makeFolder("Diario/2026-11-21");
  EXPECT_TRUE(files.removeFolder("C:\\DIARIO\\2026-11-21"));
  EXPECT_FALSE(onDisk("Diario/2026-11-21"));
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(RemoveFolder, SparesFilesAndFoldersThatHoldSomething) {
  makeFolder("full");
  folder.write("full/job", "");
  EXPECT_FALSE(files.removeFolder("C:\\full"));
  EXPECT_FALSE(files.removeFolder("C:\\full\\job"));
  EXPECT_FALSE(files.removeFolder("C:\\none"));
  EXPECT_FALSE(files.removeFolder(""));
  EXPECT_TRUE(onDisk("full/job"));
  EXPECT_THAT(trace.lines, SizeIs(4));
}

}  // namespace
}  // namespace tellaxis::platform
