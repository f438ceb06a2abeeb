// Diary: days, identities, torn lines and what is deleted.
#include "diary/diary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "diary/diary_desk.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string> idsOf(const std::vector<DiaryEntry>& entries) {
  std::vector<std::string> ids;
  for (const DiaryEntry& entry : entries) ids.push_back(entry.id);
  return ids;
}

TEST(DiaryFolder, IsUnderTheMainFolderUnlessItIsAbsolute) {
  EXPECT_EQ(diaryFolder({}, "C:\\cassa"), "");
  EXPECT_EQ(diaryFolder({.diary = "diario"}, "C:\\cassa"), "C:\\cassa\\diario");
  EXPECT_EQ(diaryFolder({.diary = "/srv/diari\xC3\xB2"}, "/srv/cassa"), "/srv/diari\xF2");
  EXPECT_EQ(diaryFolder({.diary = "D:\\diario"}, "C:\\cassa"), "D:\\diario");
}

TEST(Diary, NumbersGoOnAfterANewStart) {
  DiaryDesk desk;
  for (int job = 0; job < 11; ++job) desk.devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  Diary again(desk.computer.host, std::string(diaryAt), {});
  DiaryEntry entry;
  again.begin(entry, "b.txt", false);
  EXPECT_EQ(entry.id, "030307-12");
}

TEST(Diary, ATornLastLineIsPassedOverAndTheNextIsWhole) {
  DiaryDesk desk;
  desk.devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  desk.computer.files.put(dayAt, desk.lines() + "{\"id\":\"030307-2\",\"time\":\"2003-");
  EXPECT_THAT(idsOf(desk.entries()), ElementsAre("030307-1"));
  DiaryDesk next;
  next.computer.files.put(dayAt, desk.lines());
  next.devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  EXPECT_THAT(idsOf(next.entries()), ElementsAre("030307-1", "030307-3"));
}

TEST(Diary, ANewDayHasANewFileAndItsOwnNumbers) {
  DiaryDesk desk;
  desk.devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  desk.computer.clock.date.day = 8;
  desk.devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  EXPECT_THAT(idsOf(readDay(desk.computer.host, diaryAt, march7 + std::chrono::days(1))), ElementsAre("030308-1"));
  EXPECT_THAT(desk.entries(), SizeIs(1));
  EXPECT_TRUE(desk.computer.files.hasFolder("C:\\cassa\\diario\\2003-03-08"));
}

TEST(Diary, DaysBeyondTheirTimeGoWithTheirCopies) {
  DiaryDesk desk({.archive = true, .days = 30});
  desk.computer.files.addFolder(diaryAt);
  desk.computer.files.addFolder("C:\\cassa\\diario\\2003-02-04");
  for (const char* name : {"2003-02-04.jsonl", "2003-02-05.jsonl", "2003-02-04\\a.txt", "note.txt"})
    desk.computer.files.put(std::string(diaryAt) + "\\" + name, "x");
  desk.devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  EXPECT_FALSE(desk.computer.files.has("C:\\cassa\\diario\\2003-02-04.jsonl"));
  EXPECT_FALSE(desk.computer.files.has("C:\\cassa\\diario\\2003-02-04\\a.txt"));
  EXPECT_FALSE(desk.computer.files.hasFolder("C:\\cassa\\diario\\2003-02-04"));
  EXPECT_TRUE(desk.computer.files.has("C:\\cassa\\diario\\2003-02-05.jsonl")) << "30 days ago";
  EXPECT_TRUE(desk.computer.files.has("C:\\cassa\\diario\\note.txt"));
}

TEST(Diary, WithoutATimeLimitNothingGoes) {
  DiaryDesk desk;
  desk.computer.files.addFolder(diaryAt);
  desk.computer.files.put("C:\\cassa\\diario\\1999-01-01.jsonl", "x");
  desk.devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  EXPECT_TRUE(desk.computer.files.has("C:\\cassa\\diario\\1999-01-01.jsonl"));
  EXPECT_THAT(desk.computer.journal.callsThatBegin("remove"), IsEmpty());
}

TEST(Diary, CopiesOfTheSameMomentAndNameAreTwo) {
  DiaryDesk desk;
  for (int job = 0; job < 2; ++job) desk.devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  const auto all = desk.entries();
  ASSERT_THAT(all, SizeIs(2));
  EXPECT_NE(all[0].copy, all[1].copy);
  for (const DiaryEntry& entry : all) EXPECT_TRUE(desk.computer.files.has(std::string(diaryAt) + "\\" + entry.copy));
}

}  // namespace
}  // namespace tellaxis
