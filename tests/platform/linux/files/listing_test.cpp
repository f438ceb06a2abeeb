// Tests of the files of a Linux computer: what a folder is said to hold.
#include <thread>
#include <vector>

#include "files_folder.h"

namespace tellaxis::platform {
namespace {

struct List : LinuxFilesTest {};

TEST_F(List, IsSortedWithoutRegardToCase) {
  for (const char* name : {"b.txt", "A_.txt", "C.TXT", "ab.TXT", "È.txt"}) folder.write(name, "");
  EXPECT_THAT(listed(), Optional(ElementsAre("ab.TXT", "A_.txt", "b.txt", "C.TXT", "\xC8.txt")));
}

TEST_F(List, HasOnlyVisibleFilesAndNoLinks) {
  folder.write("file", "");
  folder.write(".hidden", "");
  makeFolder("sub");
  makePipe("pipe");
  fs::create_symlink("file", folder.path("link"));
  fs::create_symlink("sub", folder.path("link-to-folder"));
  fs::create_symlink("nothing", folder.path("link-to-nothing"));
  EXPECT_THAT(listed(), Optional(ElementsAre("file")));
}

TEST_F(List, LeavesOutNamesThatCannotBeWrittenAndSaysSoOnce) {
  folder.write("日本.txt", "");
  folder.write("a\\b.txt", "");
  folder.write("a.txt", "");
  EXPECT_THAT(listed(), Optional(ElementsAre("a.txt")));
  EXPECT_THAT(listed(), Optional(ElementsAre("a.txt")));
  EXPECT_THAT(trace.lines, SizeIs(2));
}

TEST_F(List, ANameThatIsNoUtf8CanBeUsedAsItIsListed) {
  folder.write("citt\xE0.txt", "text");
  ASSERT_THAT(listed(), Optional(ElementsAre("citt\xE0.txt")));
  EXPECT_TRUE(files.exists("C:\\citt\xE0.txt"));
  EXPECT_TRUE(files.move("C:\\citt\xE0.txt", "C:\\citta.txt"));
  EXPECT_EQ(folder.read("citta.txt"), "text");
}

TEST_F(List, OfAFolderThatIsNotThereIsNothing) {
  EXPECT_EQ(test::movable(files, "C:\\none", "D:\\"), std::nullopt);
  EXPECT_EQ(test::movable(files, "", "D:\\"), std::nullopt);
  EXPECT_THAT(trace.lines, SizeIs(2));
}

TEST_F(List, OfThousandsOfFilesIsComplete) {
  for (int i = 0; i < 3000; ++i) folder.write("a-file-with-a-longer-name-" + std::to_string(i), "");
  EXPECT_THAT(listed(), Optional(SizeIs(3000)));
}

TEST_F(List, LeavesOutWhatItsWriterStillHolds) {
  folder.write("done", "whole");
  folder.write("job", "half");
  {
    const Descriptor writer(::open((folder / "job").c_str(), O_WRONLY | O_APPEND));
    EXPECT_THAT(listed().value(), ElementsAre("done"));
  }
  EXPECT_THAT(listed().value(), ElementsAre("done", "job"));
}

TEST_F(List, OfTwoNamesThatDifferInCaseAloneHasTheFirst) {
  folder.write("Job.txt", "first");
  folder.write("job.txt", "second");
  EXPECT_THAT(listed(), Optional(ElementsAre("Job.txt")));
  ASSERT_TRUE(files.move("C:\\Job.txt", "D:\\Job.txt"));
  ASSERT_TRUE(files.remove("D:\\Job.txt"));
  EXPECT_THAT(listed(), Optional(ElementsAre("job.txt")));
}

TEST_F(List, LeavesOutWhatCannotBeReadOrTakenAwayAndSaysSoOnce) {
  folder.write("closed", "");
  ASSERT_EQ(::chmod((folder / "closed").c_str(), 0), 0);
  makeOpenToAll(work);
  makeOpenToAll(folder);
  {
    const AsNobody nobody;
    folder.write("a", "");
    EXPECT_THAT(listed(), Optional(ElementsAre("a")));
    EXPECT_THAT(listed(), Optional(ElementsAre("a")));
  }
  EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("closed | accesso negato")));
  ASSERT_EQ(::chmod((folder / "").c_str(), 0555), 0);
  const AsNobody nobody;
  EXPECT_THAT(listed(), Optional(IsEmpty()));
}

TEST_F(List, IsEmptyWhileTheOtherFolderTakesNothing) {
  makeOpenToAll(folder);
  ASSERT_EQ(::chmod((work / "").c_str(), 0555), 0);
  {
    const AsNobody nobody;
    folder.write("a", "");
    EXPECT_THAT(listed(), Optional(IsEmpty()));
  }
  makeOpenToAll(work);
  const AsNobody nobody;
  EXPECT_THAT(listed(), Optional(ElementsAre("a")));
}

TEST_F(List, LeavesOutAnothersFileInAStickyFolder) {
  if (!isRoot()) GTEST_SKIP() << "needs a second user";
  folder.write("others", "");
  makeOpenToAll(folder, S_ISVTX);
  makeOpenToAll(work);
  const AsNobody nobody;
  folder.write("own", "");
  EXPECT_THAT(listed(), Optional(ElementsAre("own")));
}

TEST_F(List, LeavesOutWhatCannotTakeTheNameThere) {
  folder.write("a", "");
  folder.write("b", "");
  folder.write("c", "");
  fs::create_directory(work.path("A"));
  work.write("b", "older");
  const Descriptor writer(::open((work / "b").c_str(), O_WRONLY));
  work.write("C", "older, and deleted before the move");
  EXPECT_THAT(listed(), Optional(ElementsAre("c")));
}

TEST_F(List, LeavesOutWhatCouldNotBeMovedUntilSomethingHasChanged) {
  folder.write("job", "text");
  {
    const auto passage = files.openPassage("C:\\", "D:\\");
    ASSERT_NE(passage, nullptr);
    ASSERT_EQ(passage->next(), "job");
    work.write("job", "came in between");
    ASSERT_FALSE(passage->move());
  }
  EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("C:\\job")));
  EXPECT_EQ(work.read("job"), "came in between");
  fs::remove(work.path("job"));
  EXPECT_THAT(listed(), Optional(IsEmpty()));
  EXPECT_THAT(listed(), Optional(IsEmpty()));
  folder.write("job", "longer text");
  EXPECT_THAT(listed(), Optional(ElementsAre("job")));
}

TEST_F(List, NeedsTheDescriptorsOfAJob) {
  folder.write("job", "text");
  std::vector<Descriptor> all;
  for (Descriptor next(::dup(0)); next; next = Descriptor(::dup(0))) all.push_back(std::move(next));
  for (int i = 0; i < 8; ++i) all.pop_back();
  EXPECT_THAT(listed(), testing::Eq(std::nullopt));
  EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("troppi file aperti")));
  all.clear();
  EXPECT_THAT(listed(), Optional(ElementsAre("job")));
}

/// A file of another owner: the system tells nobody else whether its writer has finished.
struct UnknownWriter : LinuxFilesTest {
  void SetUp() override {
    if (!isRoot()) GTEST_SKIP() << "needs a second user";
    makeOpenToAll(folder);
    makeOpenToAll(work);
    folder.write("job", "half");
    ASSERT_EQ(::chmod((folder / "job").c_str(), 0644), 0);
  }
};

TEST_F(UnknownWriter, AFileIsListedOnceItHasSettled) {
  const AsNobody nobody;
  EXPECT_THAT(listed(), Optional(IsEmpty()));
  std::this_thread::sleep_for(Settling::time);
  EXPECT_THAT(listed(), Optional(ElementsAre("job")));
  EXPECT_TRUE(files.move("C:\\job", "D:\\job"));
  EXPECT_EQ(readThrough("D:\\job"), "half") << "at once: it has settled where it was before";
  EXPECT_TRUE(files.remove("D:\\job"));
}

TEST_F(UnknownWriter, AFileThatGrowsBeginsToSettleAnew) {
  {
    const AsNobody nobody;
    EXPECT_THAT(listed(), Optional(IsEmpty()));
  }
  std::this_thread::sleep_for(Settling::time);
  folder.write("job", "half and half");
  const AsNobody nobody;
  EXPECT_THAT(listed(), Optional(IsEmpty()));
  std::this_thread::sleep_for(Settling::time);
  EXPECT_THAT(listed(), Optional(ElementsAre("job")));
}

TEST_F(UnknownWriter, AFileThatHasNotSettledIsNeitherReadNorRemoved) {
  const AsNobody nobody;
  EXPECT_EQ(readThrough("C:\\job"), "(not opened)");
  EXPECT_FALSE(files.remove("C:\\job"));
  std::this_thread::sleep_for(Settling::time);
  EXPECT_EQ(readThrough("C:\\job"), "half");
  EXPECT_TRUE(files.remove("C:\\job"));
}

TEST_F(UnknownWriter, ACopyWaitsUntilTheFileHasSettled) {
  const AsNobody nobody;
  EXPECT_TRUE(files.copy("C:\\job", "D:\\in.txt"));
  EXPECT_EQ(work.read("in.txt"), "half");
}

TEST_F(UnknownWriter, AFileOfWhichNobodyAskedTheContentIsRemoved) {
  const AsNobody nobody;
  EXPECT_TRUE(files.remove("C:\\job"));
}

}  // namespace
}  // namespace tellaxis::platform
