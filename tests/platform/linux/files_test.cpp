// Tests of the files of a Linux computer, on real folders.
#include "platform/linux/files.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "platform/linux/kernel/descriptor.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

/// Root may do everything; what others may not do is tried as one of them.
class AsNobody {
 public:
  AsNobody() : before_(::geteuid()) {
    constexpr uid_t nobody = 65534;
    EXPECT_EQ(::seteuid(before_ == 0 ? nobody : before_), 0);
  }
  ~AsNobody() { EXPECT_EQ(::seteuid(before_), 0); }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;

 private:
  uid_t before_;
};

struct LinuxFilesTest : testing::Test {
  test::TemporaryFolder folder;
  test::TraceLog trace;
  Paths paths{folder / "", {{'C', folder / ""}}};
  LinuxFiles files{paths, trace};

  void makeFolder(const std::string& name) { fs::create_directories(folder.path(name)); }
  void makePipe(const std::string& name) { ASSERT_EQ(::mkfifo((folder / name).c_str(), 0600), 0); }
  bool onDisk(const std::string& name) { return fs::exists(fs::symlink_status(folder.path(name))); }
  mode_t permissions(const std::string& name) {
    struct stat status {};
    EXPECT_EQ(::stat((folder / name).c_str(), &status), 0);
    return status.st_mode & 07777;
  }
  std::string readThrough(const std::string& path) {
    std::string text;
    const auto file = files.openInput(path);
    if (file == nullptr) return "(not opened)";
    char buffer[3];
    for (;;) {
      const auto got = file->read(buffer);
      if (!got) return "(not read)";
      if (*got == 0) return text;
      text.append(buffer, *got);
    }
  }
};

struct Exists : LinuxFilesTest {};

TEST_F(Exists, AFileDoesAFolderDoesNot) {
  folder.write("a.txt", "");
  makeFolder("sub");
  EXPECT_TRUE(files.exists("C:\\a.txt"));
  EXPECT_FALSE(files.exists("C:\\sub"));
  EXPECT_FALSE(files.exists("C:\\other"));
  EXPECT_FALSE(files.exists(""));
  EXPECT_FALSE(files.exists("C:\\a.txt\\"));
  EXPECT_THAT(trace.lines, IsEmpty()) << "looking is no step that fails";
}

TEST_F(Exists, CaseDoesNotMatter) {
  makeFolder("Meridia");
  folder.write("Meridia/_Local.ini", "");
  EXPECT_TRUE(files.exists("C:\\MERIDIA\\_LOCAL.INI"));
}

TEST_F(Exists, ALinkIsWhatItLeadsTo) {
  folder.write("a.txt", "");
  makeFolder("sub");
  fs::create_symlink("a.txt", folder.path("to-file"));
  fs::create_symlink("sub", folder.path("to-folder"));
  fs::create_symlink("nothing", folder.path("to-nothing"));
  EXPECT_TRUE(files.exists("C:\\to-file"));
  EXPECT_FALSE(files.exists("C:\\to-folder"));
  EXPECT_FALSE(files.exists("C:\\to-nothing"));
}

TEST_F(Exists, HiddenFilesAndPipesAreNotSeen) {
  folder.write(".hidden", "");
  makePipe("pipe");
  EXPECT_FALSE(files.exists("C:\\.hidden"));
  EXPECT_FALSE(files.exists("C:\\pipe"));
}

TEST_F(Exists, NoticesAtOnceWhatOthersDo) {
  EXPECT_FALSE(files.exists("C:\\out.txt"));
  folder.write("OUT.TXT", "");
  EXPECT_TRUE(files.exists("C:\\out.txt"));
  fs::remove(folder.path("OUT.TXT"));
  EXPECT_FALSE(files.exists("C:\\out.txt"));
}

struct LookUp : LinuxFilesTest {};

TEST_F(LookUp, GivesTheNameAsTheFolderHoldsIt) {
  folder.write("Restore51.bat", "");
  folder.write("Città.txt", "");
  EXPECT_THAT(files.lookUp("C:\\RESTORE51.BAT"), Optional(std::string("Restore51.bat")));
  EXPECT_THAT(files.lookUp("C:\\citt\xC0.txt"), Optional(std::string("Citt\xE0.txt")));
  EXPECT_EQ(files.lookUp("C:\\other.bat"), std::nullopt);
}

struct Folders : LinuxFilesTest {};

TEST_F(Folders, ExistInAnyCaseAndWithATrailingSeparator) {
  makeFolder("IN");
  folder.write("file", "");
  EXPECT_TRUE(files.folderExists("C:\\in"));
  EXPECT_TRUE(files.folderExists("C:\\IN\\"));
  EXPECT_FALSE(files.folderExists("C:\\file"));
  EXPECT_FALSE(files.folderExists(""));
}

TEST_F(Folders, AreCreatedOneAtATime) {
  EXPECT_TRUE(files.createFolder("C:\\IN"));
  EXPECT_TRUE(fs::is_directory(folder.path("IN")));
  EXPECT_FALSE(files.createFolder("C:\\in"));
  EXPECT_FALSE(files.createFolder("C:\\a\\b"));
  EXPECT_THAT(folder.names(), ElementsAre("IN"));
  EXPECT_THAT(trace.lines, SizeIs(2));
}

struct List : LinuxFilesTest {};

TEST_F(List, IsSortedWithoutRegardToCase) {
  for (const char* name : {"b.txt", "A.txt", "C.TXT", "a.TXT", "È.txt"}) folder.write(name, "");
  EXPECT_THAT(files.list("C:\\"), Optional(ElementsAre("A.txt", "a.TXT", "b.txt", "C.TXT", "\xC8.txt")));
}

TEST_F(List, HasOnlyVisibleFilesAndLinksToSuch) {
  folder.write("file", "");
  folder.write(".hidden", "");
  makeFolder("sub");
  makePipe("pipe");
  fs::create_symlink("file", folder.path("link"));
  fs::create_symlink("sub", folder.path("link-to-folder"));
  fs::create_symlink("nothing", folder.path("link-to-nothing"));
  EXPECT_THAT(files.list("c:"), Optional(ElementsAre("file", "link")));
}

TEST_F(List, LeavesOutNamesThatCannotBeWrittenAndSaysSoOnce) {
  folder.write("日本.txt", "");
  folder.write("a.txt", "");
  EXPECT_THAT(files.list("C:\\"), Optional(ElementsAre("a.txt")));
  EXPECT_THAT(files.list("C:\\"), Optional(ElementsAre("a.txt")));
  EXPECT_THAT(trace.lines, SizeIs(1));
}

TEST_F(List, ANameThatIsNoUtf8CanBeUsedAsItIsListed) {
  folder.write("citt\xE0.txt", "text");
  ASSERT_THAT(files.list("C:\\"), Optional(ElementsAre("citt\xE0.txt")));
  EXPECT_TRUE(files.exists("C:\\citt\xE0.txt"));
  EXPECT_TRUE(files.move("C:\\citt\xE0.txt", "C:\\citta.txt"));
  EXPECT_EQ(folder.read("citta.txt"), "text");
}

TEST_F(List, OfAFolderThatIsNotThereIsNothing) {
  EXPECT_EQ(files.list("C:\\none"), std::nullopt);
  EXPECT_EQ(files.list(""), std::nullopt);
  EXPECT_THAT(trace.lines, SizeIs(2));
}

TEST_F(List, OfThousandsOfFilesIsComplete) {
  for (int i = 0; i < 3000; ++i) folder.write("a-file-with-a-longer-name-" + std::to_string(i), "");
  EXPECT_THAT(files.list("C:\\"), Optional(SizeIs(3000)));
}

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

TEST_F(Copy, FollowsALinkAndLeavesItInPlace) {
  folder.write("from", "new");
  makeFolder("sub");
  folder.write("sub/real", "old");
  fs::create_symlink("sub/real", folder.path("to"));
  EXPECT_TRUE(files.copy("C:\\from", "C:\\to"));
  EXPECT_TRUE(fs::is_symlink(folder.path("to")));
  EXPECT_EQ(folder.read("sub/real"), "new");
}

TEST_F(Copy, FailsWithoutASourceAFolderOrALinksEnd) {
  folder.write("from", "x");
  makeFolder("sub");
  fs::create_symlink("nothing", folder.path("link"));
  EXPECT_FALSE(files.copy("C:\\none", "C:\\to"));
  EXPECT_FALSE(files.copy("C:\\sub", "C:\\to"));
  EXPECT_FALSE(files.copy("C:\\from", "C:\\none\\to"));
  EXPECT_FALSE(files.copy("C:\\from", "C:\\sub"));
  EXPECT_FALSE(files.copy("C:\\from", "C:\\link"));
  EXPECT_FALSE(files.copy("", "C:\\to"));
  EXPECT_FALSE(files.copy("C:\\from", ""));
  EXPECT_THAT(trace.lines, SizeIs(7));
  EXPECT_THAT(folder.names(), ElementsAre("from", "link", "sub"));
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

struct Move : LinuxFilesTest {};

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

TEST_F(List, LeavesOutWhatItsWriterStillHolds) {
  folder.write("done", "whole");
  folder.write("job", "half");
  {
    const Descriptor writer(::open((folder / "job").c_str(), O_WRONLY | O_APPEND));
    EXPECT_THAT(files.list("C:\\").value(), ElementsAre("done"));
  }
  EXPECT_THAT(files.list("C:\\").value(), ElementsAre("done", "job"));
}

TEST_F(Move, IsNotHeldUpByReaders) {
  folder.write("job", "text");
  const Descriptor reader(::open((folder / "job").c_str(), O_RDONLY));
  EXPECT_TRUE(files.move("C:\\job", "C:\\job2"));
}

TEST_F(Move, OfAFileThatCannotBeReadNobodyIsKnownToHoldIt) {
  folder.write("job", "text");
  fs::permissions(folder.path("job"), fs::perms(0));
  fs::permissions(folder.path(""), fs::perms(0777));
  const AsNobody nobody;
  EXPECT_TRUE(files.move("C:\\job", "C:\\job2"));
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

TEST_F(Move, MovesALinkAndNotWhatItLeadsTo) {
  folder.write("real", "text");
  fs::create_symlink("real", folder.path("link"));
  EXPECT_TRUE(files.move("C:\\link", "C:\\link2"));
  EXPECT_TRUE(fs::is_symlink(folder.path("link2")));
  EXPECT_TRUE(onDisk("real"));
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

struct Remove : LinuxFilesTest {};

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

struct RemoveAll : LinuxFilesTest {};

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

struct Append : LinuxFilesTest {};

TEST_F(Append, AddsToWhatIsThereAndCreatesWhatIsNot) {
  EXPECT_TRUE(files.append("C:\\MF.log", "one\r\n"));
  EXPECT_TRUE(files.append("C:\\mf.LOG", "two\r\n"));
  EXPECT_EQ(folder.read("MF.log"), "one\r\ntwo\r\n");
  EXPECT_THAT(folder.names(), ElementsAre("MF.log"));
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

struct Create : LinuxFilesTest {};

TEST_F(Create, ReplacesAFileAsAWhole) {
  folder.write("Dial.bat", "older and longer");
  EXPECT_TRUE(files.create("C:\\DIAL.BAT", "new\r\n", false));
  EXPECT_EQ(folder.read("Dial.bat"), "new\r\n");
  EXPECT_THAT(folder.names(), ElementsAre("Dial.bat"));
}

TEST_F(Create, CanKeepAFileFromEverybodyElse) {
  EXPECT_TRUE(files.create("C:\\new", "secret", true));
  EXPECT_EQ(permissions("new"), 0600U);
  folder.write("old", "x");
  ASSERT_EQ(::chmod((folder / "old").c_str(), 0666), 0);
  EXPECT_TRUE(files.create("C:\\old", "secret", true));
  EXPECT_EQ(permissions("old"), 0600U);
}

TEST_F(Create, FailsWithoutTheFolder) {
  EXPECT_FALSE(files.create("C:\\none\\x", "x", false));
  EXPECT_FALSE(files.create("", "x", false));
  EXPECT_THAT(trace.lines, SizeIs(2));
}

}  // namespace
}  // namespace tellaxis::platform
