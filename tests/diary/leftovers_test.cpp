// Leftovers: jobs that waited, and the job that was under way.
#include "diary/leftovers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "diary/diary_desk.h"

namespace tellaxis {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// A desk whose program ended, seen by the next start.
class LeftoversTest : public testing::Test, protected DiaryDesk {
 protected:
  LeftoversTest() {
    for (const char* folder : {"IN", "Orbis", "CortIN", "CortOrbis"})
      computer.files.addFolder(std::string("C:\\cassa\\") + folder);
    computer.files.erase("C:\\cassa\\IN\\a.txt");
  }

  void put(const std::string& path) { computer.files.put("C:\\cassa\\" + path, "lavoro"); }
  bool has(const std::string& path) { return computer.files.has("C:\\cassa\\" + path); }

  void startUp(const std::vector<std::string>& kept = {}) {
    Diary next(computer.host, std::string(diaryAt), {.archive = true, .days = std::nullopt});
    Leftovers leftovers(next, "C:\\cassa");
    for (const char* folder : {"IN", "Orbis", "CortIN", "CortOrbis"}) {
      const auto names = computer.files.list(std::string("C:\\cassa\\") + folder);
      for (const std::string& name : names.value()) {
        const std::string path = std::string(folder) + "\\" + name;
        if (std::ranges::find(kept, path) == kept.end()) computer.files.erase("C:\\cassa\\" + path);
      }
    }
    leftovers.noteDiscarded();
  }

  /// What a program leaves that is killed while this job is under way.
  void killedDuring(const std::function<void()>& job) {
    const std::string note = std::string(diaryAt) + "\\ultimo.json";
    std::string noteThen;
    std::string linesThen;
    jobs.job = [&] {
      noteThen = computer.files.text(note);
      linesThen = lines();
    };
    job();
    computer.files.put(note, noteThen);
    computer.files.put(dayAt, linesThen);
  }
};

TEST_F(LeftoversTest, JobsThatAStartEmptiesAreDiscardedAndTheirFilesKept) {
  put("Orbis\\uno.txt");
  put("CortIN\\due.txt");
  startUp();
  const auto all = entries();
  ASSERT_THAT(all, SizeIs(2));
  EXPECT_EQ(all[0].job, "uno.txt");
  EXPECT_EQ(all[0].device, Device::fiscalPrinter);
  EXPECT_EQ(all[1].device, Device::courtesyPrinter);
  for (const DiaryEntry& entry : all) {
    EXPECT_EQ(entry.outcome, Outcome::discarded);
    EXPECT_EQ(entry.bytes, 6);
    EXPECT_EQ(computer.files.text(std::string(diaryAt) + "\\" + entry.copy), "lavoro");
  }
}

TEST_F(LeftoversTest, JobsThatAStartKeepsAreNotDiscarded) {
  put("Orbis\\uno.txt");
  startUp({"Orbis\\uno.txt"});
  EXPECT_THAT(entries(), IsEmpty());
  EXPECT_TRUE(has("Orbis\\uno.txt"));
  EXPECT_THAT(*computer.files.list("C:\\cassa\\diario\\2003-03-07"), IsEmpty());
}

TEST_F(LeftoversTest, AJobUnderWayWhenTheProgramEndedIsUnconfirmedAndNotDiscardedToo) {
  put("IN\\a.txt");
  put("IN\\b.txt");
  killedDuring([&] { devices.MF_Invia("C:\\cassa\\IN\\a.txt"); });
  startUp();
  const auto all = entries();
  ASSERT_THAT(all, SizeIs(2));
  EXPECT_EQ(all[0].job, "a.txt");
  EXPECT_EQ(all[0].outcome, Outcome::unconfirmed);
  EXPECT_FALSE(all[0].copy.empty());
  EXPECT_EQ(all[1].job, "b.txt");
  EXPECT_EQ(all[1].outcome, Outcome::discarded);
}

TEST_F(LeftoversTest, OfManyJobsOnlyTheOneUnderWayIsUnconfirmed) {
  constexpr int many = 1500;  // the note begins anew in between
  for (int job = 0; job < many; ++job) devices.MF_Invia("C:\\cassa\\IN\\a.txt");
  EXPECT_LT(computer.files.text(std::string(diaryAt) + "\\ultimo.json").size(), 200U * 1000);
  killedDuring([&] { devices.MF_Invia("C:\\cassa\\IN\\b.txt"); });
  startUp();
  const auto all = entries();
  ASSERT_THAT(all, SizeIs(many + 1));
  EXPECT_EQ(all.back().job, "b.txt");
  EXPECT_EQ(std::ranges::count(all, Outcome::unconfirmed, &DiaryEntry::outcome), 1);
}

TEST_F(LeftoversTest, HalfANoteIsOfAJobThatHadNotBegun) {
  devices.MF_Invia("C:\\cassa\\IN\\a.txt");
  devices.MF_Invia("C:\\cassa\\IN\\b.txt");
  const std::string note = std::string(diaryAt) + "\\ultimo.json";
  computer.files.put(note, computer.files.text(note) + "\n{\"id\":\"030307-3\",\"ti");
  startUp();
  ASSERT_THAT(entries(), SizeIs(2));
  EXPECT_EQ(entries()[1].job, "b.txt");
  EXPECT_NE(entries()[1].outcome, Outcome::unconfirmed);
}

TEST_F(LeftoversTest, AJobWhoseLineIsWrittenStaysAsItIs) {
  put("IN\\a.txt");
  jobs.job = [&] { bridge.fiscalOutcome = FiscalOutcome::confirmed; };
  devices.MF_Invia("C:\\cassa\\IN\\a.txt");
  startUp();
  ASSERT_THAT(entries(), SizeIs(1)) << "the file was there still, but its job had ended";
  EXPECT_EQ(entries()[0].outcome, Outcome::confirmed);
}

TEST_F(LeftoversTest, ASlipUnderWayAgainIsUnconfirmedUnderItsFirstId) {
  bridge.settings.RF_File = "C:\\cassa\\ricevuta.txt";
  put("ricevuta.txt");
  jobs.job = [&] { fails("spenta"); };
  devices.LanciaFileRF();
  devices.LanciaFileRF();
  killedDuring([&] { devices.LanciaFileRF(); });
  startUp();
  ASSERT_THAT(entries(), SizeIs(1));
  EXPECT_EQ(entries()[0].outcome, Outcome::unconfirmed);
  EXPECT_EQ(entries()[0].count, 3);
}

TEST_F(LeftoversTest, ASlipBetweenTwoTriesIsNotUnderWay) {
  bridge.settings.RF_File = "C:\\cassa\\ricevuta.txt";
  put("ricevuta.txt");
  jobs.job = [&] { fails("spenta"); };
  for (int tick = 0; tick < 3; ++tick) devices.LanciaFileRF();
  startUp();
  ASSERT_THAT(entries(), SizeIs(1));
  EXPECT_EQ(entries()[0].outcome, Outcome::failed);
}

TEST_F(LeftoversTest, ASecondStartAddsNothing) {
  put("IN\\a.txt");
  killedDuring([&] { devices.MF_Invia("C:\\cassa\\IN\\a.txt"); });
  startUp();
  startUp();
  EXPECT_THAT(entries(), SizeIs(1));
}

}  // namespace
}  // namespace tellaxis
