// Tests of files that other programs of a Windows computer have open, for long or for a moment.
#include <functional>
#include <thread>
#include <utility>

#include "platform/windows/files_under_test.h"

namespace tellaxis::platform {
namespace {

using test::WindowsFilesTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

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
      {"b.txt", [&] { return files.create(folder / "b.txt", "x", platform::Readers::asUsual); }},
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
  EXPECT_TRUE(files.create(folder / "IN\\a.txt", "y", platform::Readers::asUsual));
  EXPECT_EQ(folder.read("IN/a.txt"), "y");
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

}  // namespace
}  // namespace tellaxis::platform
