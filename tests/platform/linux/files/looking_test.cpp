// Tests of the files of a Linux computer: looking files and folders up.
#include "files_folder.h"

namespace tellaxis::platform {
namespace {

struct Exists : LinuxFilesTest {};

struct LookUp : LinuxFilesTest {};

struct Folders : LinuxFilesTest {};

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

TEST_F(LookUp, GivesTheNameAsTheFolderHoldsIt) {
  folder.write("Restore51.bat", "");
  folder.write("Città.txt", "");
  EXPECT_THAT(files.lookUp("C:\\RESTORE51.BAT"), Optional(std::string("Restore51.bat")));
  EXPECT_THAT(files.lookUp("C:\\citt\xC0.txt"), Optional(std::string("Citt\xE0.txt")));
  EXPECT_EQ(files.lookUp("C:\\other.bat"), std::nullopt);
}

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

}  // namespace
}  // namespace tellaxis::platform
