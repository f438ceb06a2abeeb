// Tests of the files of a Linux computer: writing.
#include "files_folder.h"

namespace tellaxis::platform {
namespace {

struct Append : LinuxFilesTest {};

struct Create : LinuxFilesTest {};

TEST_F(Append, AddsToWhatIsThereAndCreatesWhatIsNot) {
  EXPECT_TRUE(files.append("C:\\MF.log", "one\r\n"));
  EXPECT_TRUE(files.append("C:\\mf.LOG", "two\r\n"));
  EXPECT_EQ(folder.read("MF.log"), "one\r\ntwo\r\n");
  EXPECT_THAT(folder.names(), ElementsAre("MF.log"));
}

TEST_F(Append, DoesNotWriteThroughALink) {
  folder.write("precious", "text");
  fs::create_symlink("precious", folder.path("MF.log"));
  EXPECT_FALSE(files.append("C:\\MF.log", "more"));
  EXPECT_EQ(folder.read("precious"), "text");
}

TEST_F(Append, FailsWithoutTheFolderAndOnAPipeThatNobodyReads) {
  makePipe("pipe");
  EXPECT_FALSE(files.append("C:\\none\\MF.log", "x"));
  EXPECT_FALSE(files.append("C:\\pipe", "x"));
  EXPECT_FALSE(files.append("C:\\", "x"));
  EXPECT_FALSE(files.append("", "x"));
}

TEST_F(Append, SaysSoWhenTheDiskIsFull) {
  EXPECT_FALSE(files.append("/dev/full", "x"));
  EXPECT_THAT(trace.lines, ElementsAre("append | /dev/full | il disco \xE8 pieno"));
}

TEST_F(Create, ReplacesAFileAsAWhole) {
  folder.write("Dial.bat", "older and longer");
  EXPECT_TRUE(files.create("C:\\DIAL.BAT", "new\r\n", platform::Readers::asUsual));
  EXPECT_EQ(folder.read("Dial.bat"), "new\r\n");
  EXPECT_THAT(folder.names(), ElementsAre("Dial.bat"));
}

TEST_F(Create, CanKeepAFileFromEverybodyElse) {
  EXPECT_TRUE(files.create("C:\\new", "secret", platform::Readers::ownerAlone));
  EXPECT_EQ(permissions("new"), 0600U);
  folder.write("old", "x");
  ASSERT_EQ(::chmod((folder / "old").c_str(), 0666), 0);
  EXPECT_TRUE(files.create("C:\\old", "secret", platform::Readers::ownerAlone));
  EXPECT_EQ(permissions("old"), 0600U);
}

TEST_F(Create, CanGiveAFileToEverybody) {
  const mode_t mask = ::umask(0077);
  EXPECT_TRUE(files.create("C:\\new", "figures", platform::Readers::everybody));
  folder.write("old", "x");
  EXPECT_TRUE(files.create("C:\\old", "figures", platform::Readers::everybody));
  ::umask(mask);
  EXPECT_EQ(permissions("new"), 0644U);
  EXPECT_EQ(permissions("old"), 0644U);
}

TEST_F(Create, FailsWithoutTheFolder) {
  EXPECT_FALSE(files.create("C:\\none\\x", "x", platform::Readers::asUsual));
  EXPECT_FALSE(files.create("", "x", platform::Readers::asUsual));
  EXPECT_THAT(trace.lines, SizeIs(2));
}

}  // namespace
}  // namespace tellaxis::platform
