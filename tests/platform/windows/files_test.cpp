// Tests of the files of a Windows computer, on real folders.
#include "platform/windows/files_under_test.h"

// After windows.h, which it needs.
#include <aclapi.h>

#include "platform/windows/files/file_operations.h"

namespace tellaxis::platform {
namespace {

using test::WindowsFilesTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

TEST_F(WindowsFilesTest, AFileIsFoundWithoutRegardToCaseAndSpelledAsOnTheDisk) {
  folder.write("Scontrino.TXT", "x");
  EXPECT_TRUE(files.exists(folder / "SCONTRINO.txt"));
  EXPECT_THAT(files.lookUp(folder / "scontrino.txt"), Optional(std::string("Scontrino.TXT")));
  EXPECT_EQ(files.lookUp(folder / "manca.txt"), std::nullopt);
}

TEST_F(WindowsFilesTest, FoldersHiddenFilesPatternsAndNothingAreNoFile) {
  std::filesystem::create_directories(folder.path("cartella"));
  folder.write("nascosto.txt", "x");
  hide("nascosto.txt");
  EXPECT_FALSE(files.exists(folder / "cartella"));
  EXPECT_FALSE(files.exists(folder / "nascosto.txt"));
  EXPECT_FALSE(files.exists(folder / "*.txt"));
  EXPECT_FALSE(files.exists(""));
  EXPECT_TRUE(files.folderExists(folder / "CARTELLA"));
  EXPECT_FALSE(files.folderExists(folder / "nascosto.txt"));
}

TEST_F(WindowsFilesTest, AFileKeepsItsIdentityUntilItIsWrittenOrReplaced) {
  folder.write("rf.txt", "RR uno");
  const auto first = files.identity(folder / "rf.txt");
  ASSERT_TRUE(first);
  EXPECT_EQ(files.identity(folder / "RF.TXT"), first);
  folder.write("nuovo.txt", "RR due");
  EXPECT_NE(files.identity(folder / "nuovo.txt"), first);
  folder.write("rf.txt", "RR uno e due");
  EXPECT_NE(files.identity(folder / "rf.txt"), first);
  EXPECT_EQ(files.identity(folder / "manca.txt"), std::nullopt);
}

TEST_F(WindowsFilesTest, NamesAreInCodePage1252WhateverTheMachinesOwnIs) {
  ASSERT_TRUE(files.create((folder / "") + "perch\xE9 \x80 5.txt", "x", platform::Readers::asUsual));
  EXPECT_TRUE(std::filesystem::exists(folder.path("") / L"perch\u00E9 \u20AC 5.txt"));
  EXPECT_THAT(listed(), Optional(ElementsAre("perch\xE9 \x80 5.txt")));
}

TEST_F(WindowsFilesTest, AListHasTheVisibleFilesByNameWithoutRegardToCase) {
  for (const char* name : {"b.txt", "A.txt", "c.txt", "nascosto.txt", "\xE0.txt"})
    ASSERT_TRUE(files.create((folder / "") + name, "x", platform::Readers::asUsual));
  std::filesystem::create_directories(folder.path("aa"));
  hide("nascosto.txt");
  EXPECT_THAT(listed(), Optional(ElementsAre("A.txt", "b.txt", "c.txt", "\xE0.txt")));
  EXPECT_EQ(test::movable(files, folder / "manca", folder / ""), std::nullopt);
  EXPECT_EQ(trace.lines.size(), 1U);
}

TEST_F(WindowsFilesTest, ANameOutsideTheCodePageIsToldAndLeftOut) {
  folder.write("a.txt", "x");
  std::ofstream(folder.path("") / L"\u4E00.txt") << "x";
  EXPECT_THAT(listed(), Optional(ElementsAre("a.txt")));
  EXPECT_EQ(trace.lines.size(), 1U);
}

TEST_F(WindowsFilesTest, OneFolderIsCreatedButNotItsParents) {
  EXPECT_TRUE(files.createFolder(folder / "IN"));
  EXPECT_TRUE(onDisk("IN"));
  EXPECT_FALSE(files.createFolder(folder / "IN"));
  EXPECT_FALSE(files.createFolder(folder / "manca\\IN"));
  EXPECT_EQ(trace.lines.size(), 2U);
}

TEST_F(WindowsFilesTest, ACopyReplacesItsTarget) {
  folder.write("da.txt", "nuovo");
  folder.write("a.txt", "molto vecchio");
  EXPECT_TRUE(files.copy(folder / "da.txt", folder / "a.txt"));
  EXPECT_EQ(folder.read("a.txt"), "nuovo");
  EXPECT_THAT(folder.names(), ElementsAre("a.txt", "da.txt"));
}

TEST_F(WindowsFilesTest, AMoveGivesAnotherNameAndNeverReplaces) {
  folder.write("da.txt", "uno");
  EXPECT_TRUE(files.move(folder / "da.txt", folder / "a.txt"));
  EXPECT_EQ(folder.read("a.txt"), "uno");
  folder.write("da.txt", "due");
  EXPECT_FALSE(files.move(folder / "da.txt", folder / "a.txt"));
  EXPECT_FALSE(files.move(folder / "manca.txt", folder / "b.txt"));
  EXPECT_EQ(folder.read("a.txt"), "uno");
  EXPECT_EQ(folder.read("da.txt"), "due");
}

TEST(WindowsFileOperations, TheTemporaryLiesOutsideTheFolderOfItsTargetWhereThereIsOneAbove) {
  const auto folderOf = [](const wchar_t* target) {
    const auto path = temporaryAbove(target);
    return path ? path->substr(0, path->find_last_of(L'\\')) : L"(none)";
  };
  EXPECT_EQ(folderOf(L"C:\\RCH\\in\\scontrino.txt"), L"C:\\RCH");
  EXPECT_EQ(folderOf(L"C:\\RCH\\scontrino.txt"), L"C:");
  EXPECT_EQ(folderOf(L"C:\\scontrino.txt"), L"(none)");
  EXPECT_EQ(folderOf(L"scontrino.txt"), L"(none)");
  EXPECT_EQ(folderOf(L"\\\\cassa\\dati\\in\\scontrino.txt"), L"\\\\cassa\\dati");
  EXPECT_EQ(folderOf(L"\\\\cassa\\dati\\scontrino.txt"), L"(none)");
}

TEST_F(WindowsFilesTest, WhoWatchesAFolderSeesACopyAppearAsANewFile) {
  std::filesystem::create_directories(folder.path("IN"));
  folder.write("da.txt", "x");
  const UniqueHandle watched = owned(CreateFileW(
      folder.path("IN").c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OVERLAPPED, nullptr));
  ASSERT_TRUE(watched);
  alignas(DWORD) char buffer[4096];
  OVERLAPPED overlapped = {};
  const UniqueHandle event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  overlapped.hEvent = event.get();
  ASSERT_TRUE(ReadDirectoryChangesW(watched.get(), buffer, sizeof buffer, FALSE, FILE_NOTIFY_CHANGE_FILE_NAME, nullptr,
                                    &overlapped, nullptr));
  ASSERT_TRUE(files.copy(folder / "da.txt", folder / "IN\\a.txt"));
  ASSERT_EQ(WaitForSingleObject(event.get(), 20'000), WAIT_OBJECT_0);
  const auto& first = *reinterpret_cast<const FILE_NOTIFY_INFORMATION*>(buffer);
  EXPECT_EQ(first.Action, DWORD{FILE_ACTION_ADDED});
  EXPECT_EQ(std::wstring(first.FileName, first.FileNameLength / sizeof(wchar_t)), L"a.txt");
}

TEST_F(WindowsFilesTest, ATargetThatMayBeWrittenIntoButNotReplacedIsWrittenInto) {
  folder.write("da.txt", "nuovo");
  folder.write("a.txt", "molto vecchio");
  {
    const auto driver = hold("a.txt", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_TRUE(driver);
    EXPECT_TRUE(files.copy(folder / "da.txt", folder / "a.txt"));
  }
  EXPECT_EQ(folder.read("a.txt"), "nuovo");
  EXPECT_THAT(folder.names(), ElementsAre("a.txt", "da.txt"));
}

TEST_F(WindowsFilesTest, OneFileIsRemovedAndAMissingOneIsAFailure) {
  folder.write("a.txt", "x");
  EXPECT_TRUE(files.remove(folder / "a.txt"));
  EXPECT_FALSE(onDisk("a.txt"));
  EXPECT_FALSE(files.remove(folder / "a.txt"));
  std::filesystem::create_directories(folder.path("cartella"));
  EXPECT_FALSE(files.remove(folder / "cartella"));
  EXPECT_TRUE(onDisk("cartella"));
}

TEST_F(WindowsFilesTest, OnlyAnEmptyFolderIsRemoved) {
  std::filesystem::create_directories(folder.path("piena"));
  folder.write("piena/a.txt", "x");
  EXPECT_FALSE(files.removeFolder(folder / "PIENA"));
  EXPECT_TRUE(onDisk("piena/a.txt"));
  EXPECT_TRUE(files.remove(folder / "piena/a.txt"));
  EXPECT_TRUE(files.removeFolder(folder / "PIENA"));
  EXPECT_FALSE(onDisk("piena"));
  EXPECT_FALSE(files.removeFolder(folder / "manca"));
}

TEST_F(WindowsFilesTest, AFileIsReadToItsEnd) {
  folder.write("a.txt", std::string("uno\0due\r\n", 9));
  EXPECT_EQ(readThrough(folder / "A.TXT"), std::string("uno\0due\r\n", 9));
  EXPECT_EQ(readThrough(folder / "manca.txt"), "(not opened)");
}

TEST_F(WindowsFilesTest, TextIsAppendedToAFileThatIsMadeWhereItIsMissing) {
  EXPECT_TRUE(files.append(folder / "MF.log", "uno\r\n"));
  EXPECT_TRUE(files.append(folder / "MF.log", "due\r\n"));
  EXPECT_EQ(folder.read("MF.log"), "uno\r\ndue\r\n");
  EXPECT_FALSE(files.append(folder / "manca\\MF.log", "x"));
}

TEST_F(WindowsFilesTest, ACreatedFileReplacesAnOlderOne) {
  folder.write("Dial.bat", "qualcosa di molto pi\xF9 lungo");
  EXPECT_TRUE(files.create(folder / "Dial.bat", "rasdial\r\n", platform::Readers::asUsual));
  EXPECT_EQ(folder.read("Dial.bat"), "rasdial\r\n");
  EXPECT_FALSE(files.create(folder / "manca\\Dial.bat", "x", platform::Readers::ownerAlone));
  EXPECT_THAT(folder.names(), ElementsAre("Dial.bat"));
}

TEST_F(WindowsFilesTest, AFileForItsOwnerNamesNobodyElseInItsRights) {
  folder.write("Dial.bat", "visibile a tutti");
  ASSERT_TRUE(files.create(folder / "Dial.bat", "rasdial casa utente segreto\r\n", platform::Readers::ownerAlone));
  PACL rights = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  std::wstring path = folder.path("Dial.bat").wstring();
  ASSERT_EQ(GetNamedSecurityInfoW(path.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &rights,
                                  nullptr, &descriptor),
            static_cast<DWORD>(ERROR_SUCCESS));
  int others = 0;
  int owners = 0;
  for (DWORD i = 0; i < rights->AceCount; ++i) {
    ACCESS_ALLOWED_ACE* entry = nullptr;
    ASSERT_TRUE(GetAce(rights, i, reinterpret_cast<void**>(&entry)));
    SID_IDENTIFIER_AUTHORITY world = SECURITY_WORLD_SID_AUTHORITY;
    const bool everybody = std::equal(std::begin(world.Value), std::end(world.Value),
                                      GetSidIdentifierAuthority(reinterpret_cast<PSID>(&entry->SidStart))->Value);
    (everybody ? others : owners) += (entry->Mask & FILE_READ_DATA) != 0 ? 1 : 0;
  }
  LocalFree(descriptor);
  EXPECT_GE(owners, 1);
  EXPECT_EQ(others, 0);
}

}  // namespace
}  // namespace tellaxis::platform
