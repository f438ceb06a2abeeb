// Files contract: what every implementation of files.h owes its callers.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/files.h"
#include "platform/host.h"
#include "platform/movable.h"

namespace tellaxis::test {

/// A Computer has host(), path(name) in an empty folder that exists, pathInMissingFolder(name), hold(path) and
/// release(path) for a writer who has the file open, and fullDisk(): a folder on a disk without room that holds
/// "tenuto.txt" with the text "prima"; empty where none can be had.
template <class Computer>
struct FilesContract : testing::Test {
  Computer computer;
  platform::Files& files = computer.host().files;
  const std::string jobs = computer.path("Orbis");
  const std::string work = computer.path("IN");

  FilesContract() {
    EXPECT_TRUE(files.createFolder(jobs));
    EXPECT_TRUE(files.createFolder(work));
  }

  bool put(const std::string& path, const std::string& text) {
    return files.create(path, text, platform::Readers::asUsual);
  }

  /// What a reader gets; "(none)" where the file cannot be opened.
  std::string read(const std::string& path) {
    const auto file = files.openInput(path);
    if (!file) return "(none)";
    std::string text;
    char buffer[4];
    while (const auto got = file->read(buffer).value_or(0)) text.append(buffer, got);
    return text;
  }
};

TYPED_TEST_SUITE_P(FilesContract);

TYPED_TEST_P(FilesContract, WhatIsCreatedIsFoundWithoutRegardToCase) {
  ASSERT_TRUE(this->put(this->jobs + "\\Scontrino.TXT", "uno\r\ndue"));
  EXPECT_TRUE(this->files.exists(this->jobs + "\\SCONTRINO.txt"));
  EXPECT_EQ(this->files.lookUp(this->jobs + "\\scontrino.txt"), "Scontrino.TXT");
  EXPECT_EQ(this->read(this->jobs + "\\scontrino.txt"), "uno\r\ndue");
  ASSERT_TRUE(this->put(this->jobs + "\\scontrino.txt", "tre"));
  EXPECT_THAT(this->files.list(this->jobs), testing::Optional(testing::SizeIs(1)));
  EXPECT_EQ(this->read(this->jobs + "\\Scontrino.TXT"), "tre");
}

TYPED_TEST_P(FilesContract, WhatIsNotThereCannotBeUsed) {
  const std::string missing = this->jobs + "\\manca.txt";
  EXPECT_FALSE(this->files.exists(missing));
  EXPECT_EQ(this->files.lookUp(missing), std::nullopt);
  EXPECT_EQ(this->files.identity(missing), std::nullopt);
  EXPECT_EQ(this->files.openInput(missing), nullptr);
  EXPECT_FALSE(this->files.canRemove(missing));
  EXPECT_FALSE(this->files.copy(missing, this->work + "\\a.txt"));
  EXPECT_FALSE(this->files.move(missing, this->work + "\\a.txt"));
  EXPECT_FALSE(this->files.remove(missing));
}

TYPED_TEST_P(FilesContract, AFolderIsNoFile) {
  EXPECT_TRUE(this->files.folderExists(this->jobs));
  EXPECT_FALSE(this->files.exists(this->jobs));
  EXPECT_FALSE(this->files.remove(this->jobs));
  EXPECT_EQ(this->files.openInput(this->jobs), nullptr);
  EXPECT_FALSE(this->files.createFolder(this->jobs)) << "a second time";
  EXPECT_TRUE(this->files.folderExists(this->jobs));
  EXPECT_FALSE(this->files.folderExists(this->computer.path("manca")));
}

TYPED_TEST_P(FilesContract, AMissingFolderTakesAndGivesNothing) {
  const std::string missing = this->computer.pathInMissingFolder("a.txt");
  const std::string folder = missing.substr(0, missing.rfind('\\'));
  ASSERT_TRUE(this->put(this->jobs + "\\a.txt", "uno"));
  EXPECT_FALSE(this->put(missing, "uno"));
  EXPECT_FALSE(this->files.append(missing, "uno"));
  EXPECT_FALSE(this->files.copy(this->jobs + "\\a.txt", missing));
  EXPECT_FALSE(this->files.move(this->jobs + "\\a.txt", missing));
  EXPECT_EQ(this->files.list(folder), std::nullopt);
  EXPECT_EQ(test::movable(this->files, folder, this->work), std::nullopt);
  EXPECT_EQ(test::movable(this->files, this->jobs, folder), std::nullopt);
  EXPECT_FALSE(this->files.removeAll(folder));
  EXPECT_FALSE(this->files.removeFolder(folder));
  EXPECT_EQ(this->read(this->jobs + "\\a.txt"), "uno");
}

TYPED_TEST_P(FilesContract, FilesAreListedInTheOrderOfTheirNames) {
  for (const char* name : {"b.txt", "A.txt", "c.txt"}) ASSERT_TRUE(this->put(this->jobs + "\\" + name, "x"));
  ASSERT_TRUE(this->files.createFolder(this->jobs + "\\aa"));
  EXPECT_THAT(this->files.list(this->jobs), testing::Optional(testing::ElementsAre("A.txt", "b.txt", "c.txt")));
  EXPECT_THAT(this->files.list(this->work), testing::Optional(testing::IsEmpty()));
  EXPECT_THAT(test::movable(this->files, this->jobs, this->work),
              testing::Optional(testing::ElementsAre("A.txt", "b.txt", "c.txt")));
}

TYPED_TEST_P(FilesContract, APassageMovesTheFilesThatItNames) {
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) ASSERT_TRUE(this->put(this->jobs + "\\" + name, name));
  {
    const auto passage = this->files.openPassage(this->jobs, this->work);
    ASSERT_NE(passage, nullptr);
    EXPECT_EQ(passage->next(), "a.txt");
    EXPECT_FALSE(passage->isTaken());
    EXPECT_TRUE(passage->move());
    EXPECT_EQ(passage->next(), "b.txt");
    EXPECT_EQ(passage->next(), "c.txt") << "what is not moved stays";
    EXPECT_TRUE(passage->move());
    EXPECT_EQ(passage->next(), std::nullopt);
    EXPECT_EQ(passage->next(), std::nullopt);
  }
  EXPECT_EQ(this->read(this->work + "\\a.txt"), "a.txt");
  EXPECT_THAT(this->files.list(this->jobs), testing::Optional(testing::ElementsAre("b.txt")));
  EXPECT_THAT(this->files.list(this->work), testing::Optional(testing::ElementsAre("a.txt", "c.txt")));
}

TYPED_TEST_P(FilesContract, APassageReplacesNothingUnasked) {
  ASSERT_TRUE(this->put(this->jobs + "\\a.txt", "nuovo"));
  ASSERT_TRUE(this->put(this->work + "\\A.TXT", "vecchio"));
  const auto passage = this->files.openPassage(this->jobs, this->work);
  ASSERT_NE(passage, nullptr);
  EXPECT_EQ(passage->next(), "a.txt");
  EXPECT_TRUE(passage->isTaken());
  EXPECT_FALSE(passage->move());
  EXPECT_EQ(this->read(this->work + "\\a.txt"), "vecchio");
  EXPECT_TRUE(this->files.remove(this->work + "\\a.txt"));
  EXPECT_FALSE(passage->isTaken());
  EXPECT_TRUE(passage->move());
  EXPECT_EQ(this->read(this->work + "\\a.txt"), "nuovo");
  EXPECT_FALSE(this->files.exists(this->jobs + "\\a.txt"));
}

TYPED_TEST_P(FilesContract, ACopyReplacesAndAMoveDoesNot) {
  const std::string from = this->jobs + "\\a.txt";
  const std::string to = this->work + "\\a.txt";
  ASSERT_TRUE(this->put(from, "nuovo"));
  ASSERT_TRUE(this->put(to, "vecchio e piu lungo"));
  EXPECT_FALSE(this->files.move(from, to));
  EXPECT_EQ(this->read(to), "vecchio e piu lungo");
  EXPECT_TRUE(this->files.copy(from, to));
  EXPECT_EQ(this->read(to), "nuovo");
  EXPECT_EQ(this->read(from), "nuovo");
  EXPECT_TRUE(this->files.remove(to));
  EXPECT_TRUE(this->files.move(from, to));
  EXPECT_EQ(this->read(to), "nuovo");
  EXPECT_FALSE(this->files.exists(from));
}

TYPED_TEST_P(FilesContract, ACopyToANewNameReplacesNothing) {
  const std::string from = this->jobs + "\\a.txt";
  const std::string to = this->work + "\\copia.txt";
  ASSERT_TRUE(this->put(from, "nuovo"));
  EXPECT_TRUE(this->files.copyToNew(from, to));
  EXPECT_EQ(this->read(to), "nuovo");
  EXPECT_EQ(this->read(from), "nuovo");
  ASSERT_TRUE(this->put(from, "altro"));
  EXPECT_FALSE(this->files.copyToNew(from, to));
  EXPECT_EQ(this->read(to), "nuovo");
  EXPECT_FALSE(this->files.copyToNew(this->jobs + "\\manca.txt", this->work + "\\altra.txt"));
  EXPECT_THAT(this->files.list(this->work), testing::Optional(testing::ElementsAre("copia.txt")));
}

TYPED_TEST_P(FilesContract, AFileThatItsWriterHoldsIsLeftAlone) {
  const std::string job = this->jobs + "\\a.txt";
  ASSERT_TRUE(this->put(job, "mezzo"));
  ASSERT_TRUE(this->put(this->jobs + "\\b.txt", "intero"));
  this->computer.hold(job);
  EXPECT_THAT(test::movable(this->files, this->jobs, this->work), testing::Optional(testing::ElementsAre("b.txt")));
  EXPECT_EQ(this->files.openInput(job), nullptr);
  EXPECT_FALSE(this->files.copy(job, this->work + "\\a.txt"));
  EXPECT_FALSE(this->files.move(job, this->work + "\\a.txt"));
  EXPECT_FALSE(this->files.remove(job));
  EXPECT_FALSE(this->files.exists(this->work + "\\a.txt"));
  this->computer.release(job);
  EXPECT_THAT(test::movable(this->files, this->jobs, this->work),
              testing::Optional(testing::ElementsAre("a.txt", "b.txt")));
  EXPECT_EQ(this->read(job), "mezzo");
  EXPECT_TRUE(this->files.move(job, this->work + "\\a.txt"));
}

TYPED_TEST_P(FilesContract, WhatWasRefusedToItsReaderIsNotDeletedUnread) {
  const std::string job = this->jobs + "\\a.txt";
  ASSERT_TRUE(this->put(job, "testo"));
  this->computer.hold(job);
  EXPECT_EQ(this->files.openInput(job), nullptr);
  this->computer.release(job);
  EXPECT_FALSE(this->files.remove(job));
  EXPECT_EQ(this->read(job), "testo");
  EXPECT_TRUE(this->files.remove(job));
  EXPECT_FALSE(this->files.exists(job));
}

TYPED_TEST_P(FilesContract, AppendingCreatesAndGoesOn) {
  const std::string log = this->work + "\\log.txt";
  EXPECT_TRUE(this->files.append(log, "uno"));
  EXPECT_TRUE(this->files.append(log, ",due"));
  EXPECT_EQ(this->read(log), "uno,due");
}

TYPED_TEST_P(FilesContract, EmptyingAFolderLeavesItsFolders) {
  ASSERT_TRUE(this->put(this->jobs + "\\a.txt", "x"));
  ASSERT_TRUE(this->files.createFolder(this->jobs + "\\sotto"));
  ASSERT_TRUE(this->put(this->jobs + "\\sotto\\b.txt", "y"));
  EXPECT_TRUE(this->files.removeAll(this->jobs));
  EXPECT_THAT(this->files.list(this->jobs), testing::Optional(testing::IsEmpty()));
  EXPECT_EQ(this->read(this->jobs + "\\sotto\\b.txt"), "y");
  EXPECT_FALSE(this->files.removeFolder(this->jobs + "\\sotto")) << "it is not empty";
  EXPECT_TRUE(this->files.removeAll(this->jobs + "\\sotto"));
  EXPECT_TRUE(this->files.removeFolder(this->jobs + "\\sotto"));
  EXPECT_FALSE(this->files.folderExists(this->jobs + "\\sotto"));
}

TYPED_TEST_P(FilesContract, AFileIsKnownAgainUntilItChanges) {
  const std::string slip = this->work + "\\slip.txt";
  ASSERT_TRUE(this->put(slip, "uno"));
  const auto before = this->files.identity(slip);
  ASSERT_TRUE(before);
  EXPECT_EQ(this->files.identity(slip), before);
  ASSERT_TRUE(this->files.append(slip, "due"));
  EXPECT_NE(this->files.identity(slip), before);
}

TYPED_TEST_P(FilesContract, AFullDiskLeavesWhatWasThere) {
  const std::string disk = this->computer.fullDisk();
  if (disk.empty()) GTEST_SKIP() << "no disk can be filled here";
  const std::string kept = disk + "\\tenuto.txt";
  const std::string large(100'000, 'x');
  ASSERT_TRUE(this->put(this->jobs + "\\a.txt", large));
  EXPECT_EQ(this->read(kept), "prima");
  EXPECT_FALSE(this->put(kept, large));
  EXPECT_FALSE(this->files.copy(this->jobs + "\\a.txt", kept));
  EXPECT_FALSE(this->files.move(this->jobs + "\\a.txt", disk + "\\a.txt"));
  EXPECT_EQ(this->read(kept), "prima");
  EXPECT_EQ(this->read(this->jobs + "\\a.txt"), large);
  EXPECT_TRUE(this->files.remove(kept));
}

REGISTER_TYPED_TEST_SUITE_P(FilesContract, WhatIsCreatedIsFoundWithoutRegardToCase, WhatIsNotThereCannotBeUsed,
                            AFolderIsNoFile, AMissingFolderTakesAndGivesNothing, FilesAreListedInTheOrderOfTheirNames,
                            APassageMovesTheFilesThatItNames, APassageReplacesNothingUnasked,
                            ACopyReplacesAndAMoveDoesNot, ACopyToANewNameReplacesNothing,
                            AFileThatItsWriterHoldsIsLeftAlone, WhatWasRefusedToItsReaderIsNotDeletedUnread,
                            AppendingCreatesAndGoesOn, EmptyingAFolderLeavesItsFolders, AFileIsKnownAgainUntilItChanges,
                            AFullDiskLeavesWhatWasThere);

}  // namespace tellaxis::test
