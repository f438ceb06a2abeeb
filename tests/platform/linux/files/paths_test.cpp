// Tests of the way from Windows paths to native ones.
#include "platform/linux/files/paths.h"

#include <gtest/gtest.h>

#include "platform/temporary_folder.h"

namespace tellaxis::platform {
namespace {

namespace fs = std::filesystem;

struct LinuxPaths : testing::Test {
  test::TemporaryFolder folder;
  std::string root = folder / "";
  Paths paths{folder / "main", {{'D', folder / "dati"}}};

  LinuxPaths() { root.pop_back(); }
  void makeFolder(const std::string& name) { fs::create_directories(folder.path(name)); }
};

TEST_F(LinuxPaths, ADriveIsTheFolderGivenForIt) {
  EXPECT_EQ(paths.spelled("D:\\a\\b.txt"), root + "/dati/a/b.txt");
  EXPECT_EQ(paths.spelled("d:\\a"), root + "/dati/a");
  EXPECT_EQ(paths.spelled("d:a"), root + "/dati/a");
  EXPECT_EQ(paths.spelled("D:/a/b"), root + "/dati/a/b");
}

TEST_F(LinuxPaths, ADriveThatWasNotGivenLiesInTheMainFolder) {
  EXPECT_EQ(paths.spelled("C:\\MERIDIA"), root + "/main/drive_c/MERIDIA");
  EXPECT_EQ(paths.spelled("x:\\y"), root + "/main/drive_x/y");
}

TEST_F(LinuxPaths, WithoutADriveAPathIsNative) {
  EXPECT_EQ(paths.spelled("/tmp\\IN\\job.txt"), "/tmp/IN/job.txt");
  EXPECT_EQ(paths.spelled("\\tmp\\x"), "/tmp/x");
  EXPECT_EQ(paths.spelled("relative"), "relative");
}

TEST_F(LinuxPaths, AccentsBecomeUtf8) { EXPECT_EQ(paths.spelled("/caff\xE8\\\x80.txt"), "/caffè/€.txt"); }

TEST_F(LinuxPaths, EmptyPathsAndNulsAreNoPaths) {
  EXPECT_EQ(paths.spelled(""), std::nullopt);
  EXPECT_EQ(paths.resolve(""), std::nullopt);
  EXPECT_EQ(paths.spelled(std::string_view("/tmp/a\0b", 8)), std::nullopt);
}

TEST_F(LinuxPaths, EachComponentIsLookedUpWithoutRegardToCase) {
  makeFolder("main/drive_c/Meridia/Epson");
  folder.write("main/drive_c/Meridia/Epson/Scontr.XML", "x");
  EXPECT_EQ(paths.resolve("C:\\MERIDIA\\EPSON\\SCONTR.xml"), root + "/main/drive_c/Meridia/Epson/Scontr.XML");
}

TEST_F(LinuxPaths, WhatDoesNotExistKeepsItsSpellingBelowWhatDoes) {
  makeFolder("main/drive_c/Meridia");
  EXPECT_EQ(paths.resolve("C:\\MERIDIA\\New\\File.txt"), root + "/main/drive_c/Meridia/New/File.txt");
  EXPECT_EQ(paths.resolve("Z:\\a\\b"), root + "/main/drive_z/a/b");
}

TEST_F(LinuxPaths, WhatExistsAsSpelledIsPreferred) {
  folder.write("a.txt", "1");
  folder.write("A.TXT", "2");
  EXPECT_EQ(paths.resolve(root + "\\a.txt"), root + "/a.txt");
  EXPECT_EQ(paths.resolve(root + "\\A.TXT"), root + "/A.TXT");
}

TEST_F(LinuxPaths, OfSeveralOtherSpellingsTheFirstByItsBytesIsTaken) {
  folder.write("a.txt", "1");
  folder.write("A.TXT", "2");
  folder.write("A.txt", "3");
  EXPECT_EQ(paths.resolve(root + "\\a.TXT"), root + "/A.TXT");
}

TEST_F(LinuxPaths, AccentedLettersMatchWithoutRegardToCaseToo) {
  folder.write("Città.txt", "x");
  EXPECT_EQ(paths.resolve(root + "\\CITT\xC0.TXT"), root + "/Città.txt");
}

TEST_F(LinuxPaths, ANameThatIsNoUtf8IsFoundByItsBytes) {
  folder.write("citt\xE0.txt", "x");
  EXPECT_EQ(paths.resolve(root + "\\citt\xE0.txt"), root + "/citt\xE0.txt");
}

TEST_F(LinuxPaths, DotsPass) {
  makeFolder("Sub");
  folder.write("file.txt", "x");
  EXPECT_EQ(paths.resolve(root + "\\SUB\\..\\.\\FILE.TXT"), root + "/Sub/.././file.txt");
}

TEST_F(LinuxPaths, ATrailingSeparatorStays) {
  makeFolder("Sub");
  EXPECT_EQ(paths.resolve(root + "\\SUB\\"), root + "/Sub/");
}

TEST_F(LinuxPaths, ALinkThatLeadsNowhereExistsAsSpelled) {
  fs::create_symlink("/nowhere/at/all", folder.path("link"));
  folder.write("LINK", "x");
  EXPECT_EQ(paths.resolve(root + "\\link"), root + "/link");
}

TEST_F(LinuxPaths, ARelativePathIsLookedUpFromTheWorkingFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(folder.path(""));
  makeFolder("Sub");
  folder.write("Sub/One", "x");
  EXPECT_EQ(paths.resolve("sub\\one"), "Sub/One");
  fs::current_path(before);
}

}  // namespace
}  // namespace tellaxis::platform
