// Diary devices: every outcome of a job, and jobs that are tried again.
#include "diary/diary_devices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/step_failed.h"
#include "diary/diary_desk.h"

namespace tellaxis {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::SizeIs;

class DiaryDevicesTest : public testing::Test, protected DiaryDesk {
 protected:
  DiaryEntry last() {
    const auto all = entries();
    return all.empty() ? DiaryEntry{} : all.back();
  }
};

TEST_F(DiaryDevicesTest, AFiscalJobHasTheOutcomeOfItsHandOver) {
  const std::pair<FiscalOutcome, Outcome> pairs[] = {
      {FiscalOutcome::delivered, Outcome::delivered},   {FiscalOutcome::confirmed, Outcome::confirmed},
      {FiscalOutcome::unanswered, Outcome::unanswered}, {FiscalOutcome::givenUp, Outcome::givenUp},
      {FiscalOutcome::notHandedOver, Outcome::failed},
  };
  for (const auto& [atDriver, outcome] : pairs) {
    jobs.job = [&, how = atDriver] { bridge.fiscalOutcome = how; };
    devices.MF_Invia("C:\\cassa\\IN\\a.txt");
    EXPECT_EQ(last().outcome, outcome);
    EXPECT_EQ(last().device, Device::fiscalPrinter);
  }
  EXPECT_THAT(entries(), SizeIs(5));
  EXPECT_EQ(last().reason, "niente da consegnare o nessun driver");
}

TEST_F(DiaryDevicesTest, AnEntrySaysWhatWhenHowLargeAndHowLong) {
  computer.clock.seconds = 10 * 3600 + 5 * 60 + 42.125;
  jobs.job = [&] { computer.clock.sleep(1500ms); };
  devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  EXPECT_EQ(last(), (DiaryEntry{.id = "030307-1",
                                .time = "2003-03-07T10:05:42.125",
                                .device = Device::courtesyPrinter,
                                .job = "a.txt",
                                .bytes = 9,
                                .outcome = Outcome::done,
                                .ms = 1500,
                                .reason = "",
                                .copy = "2003-03-07\\100542-125-a.txt"}));
}

TEST_F(DiaryDevicesTest, TheJobsFileIsKeptBeforeTheJobTouchesIt) {
  jobs.job = [&] { computer.files.erase("C:\\cassa\\IN\\a.txt"); };
  devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  EXPECT_EQ(computer.files.text(std::string(diaryAt) + "\\" + last().copy), "scontrino");
}

TEST_F(DiaryDevicesTest, AFailingStepIsTheReason) {
  jobs.job = [&] {
    fails("carta finita");
    fails("e altro");
  };
  devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  EXPECT_EQ(last().outcome, Outcome::failed);
  EXPECT_EQ(last().reason, "EndDoc LPT1:: carta finita");
}

TEST_F(DiaryDevicesTest, AJobThatLeftAtOnceIsEnteredAndLeavesAllTheSame) {
  jobs.job = [] { throw StepFailed("fine documento"); };
  EXPECT_THROW(devices.LanciaFileRF(), StepFailed);
  EXPECT_EQ(last().outcome, Outcome::failed);
  EXPECT_EQ(last().job, "ricevuta.txt");
}

TEST_F(DiaryDevicesTest, ASlipTriedAgainAndAgainIsOneEntryWithItsCount) {
  computer.files.put("C:\\RF\\ricevuta.txt", "x");
  jobs.job = [] { throw StepFailed("stampa"); };
  for (int tick = 0; tick < 50; ++tick) EXPECT_THROW(devices.LanciaFileRF(), StepFailed);
  EXPECT_THAT(entries(), SizeIs(1));
  EXPECT_EQ(std::ranges::count(lines(), '\n'), 1) << "not one line a tick";
  jobs.job = [&] { computer.files.erase("C:\\RF\\ricevuta.txt"); };
  devices.LanciaFileRF();
  EXPECT_THAT(entries(), SizeIs(1));
  EXPECT_EQ(last().outcome, Outcome::done);
  EXPECT_EQ(last().count, 51);
  EXPECT_EQ(last().reason, "");
  EXPECT_EQ(std::ranges::count(lines(), '\n'), 2);
  EXPECT_THAT(computer.journal.callsThatBegin("copy "), SizeIs(1)) << "its file is kept once";
}

TEST_F(DiaryDevicesTest, AnotherFileInThePlaceOfTheFailingOneIsAnotherJob) {
  computer.files.put("C:\\DISP\\display.txt", "uno");
  jobs.job = [&] { fails("porta occupata"); };
  devices.LanciaFileDisplay();
  devices.LanciaFileDisplay();
  computer.files.put("C:\\DISP\\display.txt", "due");
  devices.LanciaFileDisplay();
  const auto all = entries();
  ASSERT_THAT(all, SizeIs(2));
  EXPECT_EQ(all[0].count, 2);
  EXPECT_EQ(all[1].count, 1);
}

TEST_F(DiaryDevicesTest, TheCountOfAJobStillFailingIsWrittenWhenTheProgramEnds) {
  computer.files.put("C:\\DISP\\display.txt", "uno");
  jobs.job = [&] { fails("porta occupata"); };
  {
    DiaryDevices passing(noted, activity, bridge, diary);
    for (int tick = 0; tick < 7; ++tick) passing.LanciaFileDisplay();
  }
  ASSERT_THAT(entries(), SizeIs(1));
  EXPECT_EQ(last().count, 7);
}

TEST_F(DiaryDevicesTest, ADisplayJobThatFailedButWasTakenAwayIsNotTriedAgain) {
  jobs.job = [&] { fails("porta occupata"); };
  for (int job = 0; job < 2; ++job) devices.LanciaFileDisplay();
  EXPECT_THAT(entries(), SizeIs(2));
}

TEST_F(DiaryDevicesTest, ADiaryThatCannotBeWrittenCostsTheJobsNothing) {
  int run = 0;
  jobs.job = [&] { ++run; };
  devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  const std::size_t calls = computer.journal.calls().size();
  for (std::size_t k = 1; k <= calls + 2; ++k) {
    DiaryDesk desk;
    int runHere = 0;
    desk.jobs.job = [&] { ++runHere; };
    desk.computer.journal.failCall(k);
    desk.devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
    EXPECT_EQ(runHere, 1) << k;
    desk.computer.journal.failCall(0);
    desk.devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
    EXPECT_EQ(desk.entries().back().outcome, Outcome::done) << "after call " << k << " had failed";
  }
}

TEST_F(DiaryDevicesTest, WithoutTheArchiveNoFileIsCopied) {
  DiaryDesk desk(Diary::Keeping{});
  desk.devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  EXPECT_THAT(desk.computer.journal.callsThatBegin("copy"), IsEmpty());
  EXPECT_EQ(desk.entries().back().copy, "");
}

}  // namespace
}  // namespace tellaxis
