// Tests of the files of a Linux computer: copying.
#include <atomic>
#include <thread>

#include "files_folder.h"

namespace tellaxis::platform {
namespace {

struct Copy : LinuxFilesTest {};

TEST_F(Copy, ReplacesTheTargetAsAWhole) {
  folder.write("from", "new");
  folder.write("to", "older and longer");
  EXPECT_TRUE(files.copy("C:\\FROM", "C:\\TO"));
  EXPECT_EQ(folder.read("to"), "new");
  EXPECT_THAT(folder.names(), ElementsAre("from", "to"));
}

TEST_F(Copy, CarriesBigAndEmptyFiles) {
  std::string bytes;
  for (int i = 0; i < 300'000; ++i) bytes += static_cast<char>(i * 7);
  folder.write("big", bytes);
  folder.write("empty", "");
  EXPECT_TRUE(files.copy("C:\\big", "C:\\big2"));
  EXPECT_TRUE(files.copy("C:\\empty", "C:\\empty2"));
  EXPECT_EQ(folder.read("big2"), bytes);
  EXPECT_TRUE(onDisk("empty2"));
}

TEST_F(Copy, AReaderNeverMeetsAHalfWrittenFile) {
  const std::string one(500'000, '1');
  const std::string two(500'000, '2');
  folder.write("one", one);
  folder.write("two", two);
  folder.write("to", one);
  std::atomic<bool> stop = false;
  std::atomic<int> halves = 0;
  std::thread reader([&] {
    while (!stop) {
      const std::string seen = folder.read("to");
      if (seen != one && seen != two) ++halves;
    }
  });
  for (int i = 0; i < 50; ++i) ASSERT_TRUE(files.copy(i % 2 == 0 ? "C:\\two" : "C:\\one", "C:\\to"));
  stop = true;
  reader.join();
  EXPECT_EQ(halves, 0);
}

TEST_F(Copy, KeepsThePermissionsOfTheFileThatIsReplaced) {
  folder.write("from", "x");
  folder.write("to", "y");
  ASSERT_EQ(::chmod((folder / "to").c_str(), 0640), 0);
  EXPECT_TRUE(files.copy("C:\\from", "C:\\to"));
  EXPECT_EQ(permissions("to"), 0640U);
}

TEST_F(Copy, ReplacesALinkAndNotWhatItLeadsTo) {
  folder.write("from", "new");
  folder.write("precious", "old");
  fs::create_symlink("precious", folder.path("to"));
  EXPECT_TRUE(files.copy("C:\\from", "C:\\to"));
  EXPECT_FALSE(fs::is_symlink(folder.path("to")));
  EXPECT_EQ(folder.read("to"), "new");
  EXPECT_EQ(folder.read("precious"), "old");
}

TEST_F(Copy, DoesNotReadThroughALink) {
  folder.write("secret", "text");
  fs::create_symlink("secret", folder.path("from"));
  EXPECT_FALSE(files.copy("C:\\from", "C:\\to"));
  EXPECT_FALSE(onDisk("to"));
}

TEST_F(Copy, WritesIntoADeviceThatALinkNames) {
  folder.write("from", "text");
  fs::create_symlink("/dev/null", folder.path("printer"));
  EXPECT_TRUE(files.copy("C:\\from", "C:\\printer"));
  EXPECT_TRUE(fs::is_symlink(folder.path("printer")));
}

TEST_F(Copy, FailsWhileTheWriterOfItsSourceHoldsIt) {
  folder.write("from", "half");
  {
    const Descriptor writer(::open((folder / "from").c_str(), O_WRONLY | O_APPEND));
    EXPECT_FALSE(files.copy("C:\\from", "C:\\to"));
    EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("aperto in scrittura")));
    EXPECT_FALSE(files.remove("C:\\from"));
  }
  EXPECT_FALSE(onDisk("to"));
  EXPECT_TRUE(files.copy("C:\\from", "C:\\to"));
}

TEST_F(Copy, WritesIntoAFileThatCannotBeReplacedByAnother) {
  makeFolder("driver");
  folder.write("from", "new");
  folder.write("driver/in.txt", "old and longer");
  ASSERT_EQ(::chmod((folder / "driver/in.txt").c_str(), 0666), 0);
  ASSERT_EQ(::chmod((folder / "driver").c_str(), 0555), 0);
  struct stat before {};
  ASSERT_EQ(::stat((folder / "driver/in.txt").c_str(), &before), 0);
  {
    const AsNobody nobody;
    EXPECT_TRUE(files.copy("C:\\from", "C:\\driver\\in.txt"));
    EXPECT_FALSE(files.copy("C:\\from", "C:\\driver\\other.txt"));
  }
  struct stat after {};
  ASSERT_EQ(::stat((folder / "driver/in.txt").c_str(), &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino);
  EXPECT_EQ(folder.read("driver/in.txt"), "new");
}

TEST_F(Copy, WritesIntoAnothersFileInAStickyFolder) {
  if (!isRoot()) GTEST_SKIP() << "needs a second user";
  folder.write("from", "new");
  work.write("in.txt", "old and longer");
  ASSERT_EQ(::chmod((work / "in.txt").c_str(), 0666), 0);
  makeOpenToAll(work, S_ISVTX);
  makeOpenToAll(folder);
  {
    const AsNobody nobody;
    EXPECT_TRUE(files.copy("C:\\from", "D:\\in.txt"));
  }
  EXPECT_EQ(work.read("in.txt"), "new");
  EXPECT_THAT(work.names(), ElementsAre("in.txt"));
}

TEST_F(Copy, FailsWithoutASourceOrAFolder) {
  folder.write("from", "x");
  makeFolder("sub");
  EXPECT_FALSE(files.copy("C:\\none", "C:\\to"));
  EXPECT_FALSE(files.copy("C:\\sub", "C:\\to"));
  EXPECT_FALSE(files.copy("C:\\from", "C:\\none\\to"));
  EXPECT_FALSE(files.copy("C:\\from", "C:\\sub"));
  EXPECT_FALSE(files.copy("", "C:\\to"));
  EXPECT_FALSE(files.copy("C:\\from", ""));
  EXPECT_THAT(trace.lines, SizeIs(6));
  EXPECT_THAT(folder.names(), ElementsAre("from", "sub"));
}

TEST_F(Copy, WritesIntoAPipeThatSomebodyReads) {
  folder.write("from", "text");
  makePipe("pipe");
  const Descriptor reader(::open((folder / "pipe").c_str(), O_RDONLY | O_NONBLOCK));
  EXPECT_TRUE(files.copy("C:\\from", "C:\\pipe"));
  char buffer[16];
  EXPECT_EQ(::read(reader.number(), buffer, sizeof buffer), 4);
}

TEST_F(Copy, DoesNotHangOnAPipeThatNobodyReads) {
  folder.write("from", "text");
  makePipe("pipe");
  EXPECT_FALSE(files.copy("C:\\from", "C:\\pipe"));
  EXPECT_FALSE(files.copy("C:\\pipe", "C:\\to"));
  EXPECT_THAT(folder.names(), ElementsAre("from", "pipe"));
}

TEST_F(Copy, GivesAPipeUpThatTakesNothing) {
  folder.write("from", std::string(200'000, 'x'));
  makePipe("pipe");
  const Descriptor reader(::open((folder / "pipe").c_str(), O_RDONLY | O_NONBLOCK));
  EXPECT_FALSE(files.copy("C:\\from", "C:\\pipe"));
  EXPECT_THAT(trace.lines, SizeIs(1));
}

TEST_F(Copy, WritesIntoADevice) {
  folder.write("from", "text");
  EXPECT_TRUE(files.copy("C:\\from", "/dev/null"));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

}  // namespace
}  // namespace tellaxis::platform
