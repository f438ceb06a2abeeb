// Tests of the files of a Windows computer, on real folders.
#include "platform/windows/files.h"

#include <gmock/gmock.h>
#include <windows.h>
// After windows.h, which it needs.
#include <aclapi.h>

#include <functional>
#include <thread>

#include "platform/temporary_folder.h"
#include "platform/trace_log.h"
#include "platform/windows/files/file_operations.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

struct WindowsFilesTest : testing::Test {
  test::TemporaryFolder folder;
  test::TemporaryFolder work;
  test::TraceLog trace;
  WindowsFiles files{trace};

  bool onDisk(const std::string& name) { return std::filesystem::exists(folder.path(name)); }

  void hide(const std::string& name) {
    ASSERT_TRUE(SetFileAttributesW(folder.path(name).c_str(), FILE_ATTRIBUTE_HIDDEN));
  }

  /// Somebody else has the file open in this way.
  UniqueHandle hold(const std::string& name, DWORD access, DWORD sharing) {
    return owned(CreateFileW(folder.path(name).c_str(), access, sharing, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                             nullptr));
  }

  /// What could be moved to another folder.
  auto listed() { return files.listMovable((folder / "").substr(0, (folder / "").size() - 1), work / ""); }

  std::string readThrough(const std::string& path) {
    const auto file = files.openInput(path);
    if (file == nullptr) return "(not opened)";
    std::string text;
    char buffer[3];
    for (;;) {
      const auto got = file->read(buffer);
      if (!got) return "(not read)";
      if (*got == 0) return text;
      text.append(buffer, *got);
    }
  }
};

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

TEST_F(WindowsFilesTest, AProtectedFileAndOneInAnothersHandsCannotBeRemoved) {
  folder.write("rf.txt", "x");
  EXPECT_TRUE(files.canRemove(folder / "rf.txt"));
  SetFileAttributesW(folder.path("rf.txt").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_FALSE(files.canRemove(folder / "rf.txt"));
  EXPECT_FALSE(files.remove(folder / "rf.txt"));
  SetFileAttributesW(folder.path("rf.txt").c_str(), FILE_ATTRIBUTE_NORMAL);
  {
    const UniqueHandle other = hold("rf.txt", GENERIC_READ, FILE_SHARE_READ);
    ASSERT_TRUE(other);
    EXPECT_FALSE(files.canRemove(folder / "rf.txt"));
    EXPECT_FALSE(files.remove(folder / "rf.txt"));
  }
  EXPECT_FALSE(files.canRemove(folder / "manca.txt"));
  EXPECT_TRUE(files.remove(folder / "rf.txt"));
}

TEST_F(WindowsFilesTest, NamesAreInCodePage1252WhateverTheMachinesOwnIs) {
  ASSERT_TRUE(files.create((folder / "") + "perch\xE9 \x80 5.txt", "x", false));
  EXPECT_TRUE(std::filesystem::exists(folder.path("") / L"perch\u00E9 \u20AC 5.txt"));
  EXPECT_THAT(listed(), Optional(ElementsAre("perch\xE9 \x80 5.txt")));
}

TEST_F(WindowsFilesTest, AListHasTheVisibleFilesByNameWithoutRegardToCase) {
  for (const char* name : {"b.txt", "A.txt", "c.txt", "nascosto.txt", "\xE0.txt"})
    ASSERT_TRUE(files.create((folder / "") + name, "x", false));
  std::filesystem::create_directories(folder.path("aa"));
  hide("nascosto.txt");
  EXPECT_THAT(listed(), Optional(ElementsAre("A.txt", "b.txt", "c.txt", "\xE0.txt")));
  EXPECT_EQ(files.listMovable(folder / "manca", folder / ""), std::nullopt);
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

TEST_F(WindowsFilesTest, ACopyOverATargetInUseFailsAndLeavesNothingBehind) {
  folder.write("da.txt", "nuovo");
  folder.write("a.txt", "vecchio");
  {
    const auto held = hold("a.txt", GENERIC_READ, FILE_SHARE_READ);
    EXPECT_FALSE(files.copy(folder / "da.txt", folder / "a.txt"));
  }
  EXPECT_FALSE(files.copy(folder / "manca.txt", folder / "a.txt"));
  EXPECT_FALSE(files.copy(folder / "da.txt", folder / "manca\\a.txt"));
  EXPECT_EQ(folder.read("a.txt"), "vecchio");
  EXPECT_THAT(folder.names(), ElementsAre("a.txt", "da.txt"));
  EXPECT_EQ(trace.lines.size(), 3U);
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

TEST_F(WindowsFilesTest, AFileStillBeingWrittenIsNeitherListedNorMoved) {
  folder.write("da.txt", "uno");
  for (const DWORD sharing :
       {0UL, DWORD{FILE_SHARE_READ}, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE}}) {
    const auto writer = hold("da.txt", GENERIC_WRITE, sharing);
    ASSERT_TRUE(writer);
    EXPECT_THAT(listed(), Optional(IsEmpty())) << sharing;
    EXPECT_FALSE(files.move(folder / "da.txt", folder / "a.txt")) << sharing;
  }
  EXPECT_EQ(trace.lines.size(), 3U);
  EXPECT_THAT(listed(), Optional(ElementsAre("da.txt")));
  EXPECT_TRUE(files.move(folder / "da.txt", folder / "a.txt"));
}

/// A virus scanner: holds a file for a moment.
struct Moment {
  explicit Moment(UniqueHandle held)
      : thread([handle = std::move(held)]() mutable {
          Sleep(400);
          handle.reset();
        }) {}
  ~Moment() { thread.join(); }
  std::thread thread;
};

TEST_F(WindowsFilesTest, WhatIsHeldForAMomentIsMovedCopiedAndRemovedAllTheSame) {
  const std::pair<const char*, std::function<bool()>> steps[] = {
      {"a.txt", [&] { return files.move(folder / "a.txt", folder / "b.txt"); }},
      {"b.txt", [&] { return files.copy(folder / "da.txt", folder / "b.txt"); }},
      {"b.txt", [&] { return files.create(folder / "b.txt", "x", false); }},
      {"b.txt", [&] { return files.remove(folder / "b.txt"); }},
      {"da.txt", [&] { return files.removeAll(folder / "."); }},
  };
  folder.write("a.txt", "uno");
  folder.write("da.txt", "due");
  for (const auto& [held, step] : steps) {
    const Moment moment(hold(held, GENERIC_READ, FILE_SHARE_READ));
    EXPECT_TRUE(step()) << held;
  }
  EXPECT_THAT(folder.names(), IsEmpty());
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(WindowsFilesTest, WhatCouldNotBeDeletedAtTheMomentIsNotListed) {
  folder.write("a.txt", "x");
  {
    const auto scanner = hold("a.txt", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    EXPECT_THAT(listed(), Optional(IsEmpty()));
  }
  {
    const auto reader = hold("a.txt", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE);
    EXPECT_THAT(listed(), Optional(ElementsAre("a.txt")));
  }
}

TEST_F(WindowsFilesTest, ADeletedFileThatSomebodyStillHasOpenIsGone) {
  std::filesystem::create_directories(folder.path("IN"));
  folder.write("IN/a.txt", "x");
  const auto reader = hold("IN/a.txt", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
  ASSERT_TRUE(reader);
  EXPECT_TRUE(files.remove(folder / "IN\\a.txt"));
  EXPECT_FALSE(files.exists(folder / "IN\\a.txt"));
  EXPECT_TRUE(files.create(folder / "IN\\a.txt", "y", false));
  EXPECT_EQ(folder.read("IN/a.txt"), "y");
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

TEST_F(WindowsFilesTest, AFileStillBeingWrittenIsNeitherReadNorCopiedNorRemoved) {
  folder.write("rf.txt", "RR uno");
  for (const DWORD sharing :
       {0UL, DWORD{FILE_SHARE_READ}, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE}}) {
    const auto writer = hold("rf.txt", GENERIC_WRITE, sharing);
    ASSERT_TRUE(writer);
    EXPECT_EQ(files.openInput(folder / "rf.txt"), nullptr) << sharing;
    EXPECT_FALSE(files.copy(folder / "rf.txt", folder / "a.txt")) << sharing;
    EXPECT_FALSE(files.remove(folder / "rf.txt")) << sharing;
    EXPECT_FALSE(files.remove(folder / "rf.txt")) << sharing;
  }
  EXPECT_THAT(folder.names(), ElementsAre("rf.txt"));
  EXPECT_EQ(readThrough(folder / "rf.txt"), "RR uno");
  EXPECT_TRUE(files.remove(folder / "rf.txt"));
}

TEST_F(WindowsFilesTest, WhatCouldNotBeReadIsNotRemovedUnreadThoughItsWriterHasFinished) {
  folder.write("rf.txt", "RR uno");
  {
    const auto writer = hold("rf.txt", GENERIC_WRITE, FILE_SHARE_READ);
    EXPECT_EQ(files.openInput(folder / "rf.txt"), nullptr);
  }
  EXPECT_FALSE(files.remove(folder / "rf.txt"));
  EXPECT_EQ(readThrough(folder / "rf.txt"), "RR uno");
  EXPECT_TRUE(files.remove(folder / "rf.txt"));
}

TEST_F(WindowsFilesTest, AJobWhoseOlderNamesakeCannotBeRemovedIsNotListed) {
  folder.write("a.txt", "nuovo");
  work.write("a.txt", "vecchio");
  {
    const auto reader = owned(CreateFileW(work.path("a.txt").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    EXPECT_THAT(listed(), Optional(IsEmpty()));
  }
  EXPECT_THAT(listed(), Optional(ElementsAre("a.txt")));
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

TEST_F(WindowsFilesTest, EmptyingAFolderSparesSubFoldersAndTellsOfFilesInUse) {
  folder.write("a.txt", "x");
  folder.write("b.txt", "x");
  std::filesystem::create_directories(folder.path("sotto"));
  folder.write("sotto/c.txt", "x");
  {
    const auto held = hold("a.txt", GENERIC_READ, FILE_SHARE_READ);
    EXPECT_FALSE(files.removeAll((folder / "").substr(0, (folder / "").size() - 1)));
    EXPECT_THAT(folder.names(), ElementsAre("a.txt", "sotto"));
  }
  EXPECT_TRUE(files.removeAll((folder / "").substr(0, (folder / "").size() - 1)));
  EXPECT_THAT(folder.names(), ElementsAre("sotto"));
  EXPECT_TRUE(onDisk("sotto/c.txt"));
  EXPECT_FALSE(files.removeAll(folder / "manca"));
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
  EXPECT_TRUE(files.create(folder / "Dial.bat", "rasdial\r\n", false));
  EXPECT_EQ(folder.read("Dial.bat"), "rasdial\r\n");
  EXPECT_FALSE(files.create(folder / "manca\\Dial.bat", "x", true));
  EXPECT_THAT(folder.names(), ElementsAre("Dial.bat"));
}

TEST_F(WindowsFilesTest, AFileForItsOwnerNamesNobodyElseInItsRights) {
  folder.write("Dial.bat", "visibile a tutti");
  ASSERT_TRUE(files.create(folder / "Dial.bat", "rasdial casa utente segreto\r\n", true));
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
