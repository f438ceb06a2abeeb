// Tests of the files of a Linux computer: reading.
#include "files_folder.h"

namespace tellaxis::platform {
namespace {

struct OpenInput : LinuxFilesTest {};

TEST_F(OpenInput, ReadsAFileToItsEnd) {
  folder.write("Job.txt", "eight by");
  EXPECT_EQ(readThrough("C:\\JOB.TXT"), "eight by");
}

TEST_F(OpenInput, RefusesFoldersPipesDevicesAndNothing) {
  makeFolder("sub");
  makePipe("pipe");
  for (const char* path : {"C:\\sub", "C:\\pipe", "C:\\none", "", "/dev/zero"})
    EXPECT_EQ(files.openInput(path), nullptr) << path;
  EXPECT_THAT(trace.lines, SizeIs(5));
}

TEST_F(OpenInput, FailsWhileItsWriterHoldsTheFileWhichIsThenNotRemovedUnread) {
  folder.write("rf.txt", "RR uno");
  {
    const Descriptor writer(::open((folder / "rf.txt").c_str(), O_WRONLY | O_APPEND));
    EXPECT_EQ(files.openInput("C:\\rf.txt"), nullptr);
    EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("aperto in scrittura")));
  }
  EXPECT_FALSE(files.remove("C:\\rf.txt")) << "the writer has finished only since";
  EXPECT_EQ(readThrough("C:\\rf.txt"), "RR uno");
  EXPECT_TRUE(files.remove("C:\\rf.txt"));
}

TEST_F(OpenInput, DoesNotReadThroughALink) {
  folder.write("secret", "text");
  fs::create_symlink("secret", folder.path("rf.txt"));
  EXPECT_EQ(readThrough("C:\\rf.txt"), "(not opened)");
  EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("\xE8 un collegamento")));
}

}  // namespace
}  // namespace tellaxis::platform
