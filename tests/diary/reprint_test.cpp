// Reprint: what may be put into its place again, and where that is.
#include "diary/reprint.h"

#include <gtest/gtest.h>

#include "diary/diary_desk.h"

namespace tellaxis {
namespace {

class ReprintTest : public testing::Test, protected DiaryDesk {
 protected:
  ReprintTest() {
    setMainFolder(bridge.settings, "C:\\cassa");
    bridge.settings.MF_Active = bridge.settings.Cort_Active = bridge.settings.RF_Active = true;
    bridge.settings.Display_Active = true;
    computer.files.put("C:\\RF\\ricevuta.txt", "ricevuta");
    computer.files.put("C:\\DISP\\display.txt", "display");
  }

  std::string lastId() { return entries().back().id; }
  Reprint again(ReprintConsent consent = {}) { return reprint(bridge, diaryAt, lastId(), consent); }
  void fiscalJob(FiscalOutcome outcome) {
    jobs.job = [this, outcome] { bridge.fiscalOutcome = outcome; };
    devices.MF_Invia("C:\\cassa\\IN\\a.txt");
  }
};

TEST_F(ReprintTest, ACourtesyJobGoesIntoItsDropFolder) {
  devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  EXPECT_EQ(again(), Reprint::done);
  EXPECT_EQ(computer.files.text("C:\\cassa\\CortOrbis\\a.txt"), "scontrino");
}

TEST_F(ReprintTest, SlipAndDisplayJobsGoToTheirFiles) {
  devices.LanciaFileRF();
  computer.files.erase("C:\\RF\\ricevuta.txt");
  EXPECT_EQ(again(), Reprint::done);
  EXPECT_EQ(computer.files.text("C:\\RF\\ricevuta.txt"), "ricevuta");
  devices.LanciaFileDisplay();
  computer.files.erase("C:\\DISP\\display.txt");
  EXPECT_EQ(again(), Reprint::done);
  EXPECT_EQ(computer.files.text("C:\\DISP\\display.txt"), "display");
}

TEST_F(ReprintTest, AFiscalJobTakesConsent) {
  fiscalJob(FiscalOutcome::givenUp);
  EXPECT_EQ(again(), Reprint::isFiscal);
  EXPECT_EQ(again({.evenIfIssued = true}), Reprint::isFiscal);
  EXPECT_EQ(again({.fiscal = true}), Reprint::done);
  EXPECT_EQ(computer.files.text("C:\\cassa\\Orbis\\a.txt"), "scontrino");
}

TEST_F(ReprintTest, TheConsentThatIsNeededIsTheOneThatSuffices) {
  for (const FiscalOutcome outcome : {FiscalOutcome::givenUp, FiscalOutcome::delivered, FiscalOutcome::confirmed}) {
    computer.files.put("C:\\cassa\\IN\\a.txt", "scontrino");
    fiscalJob(outcome);
    const ReprintConsent needed = neededConsent(entries().back());
    EXPECT_TRUE(needed.fiscal);
    EXPECT_EQ(needed.evenIfIssued, outcome != FiscalOutcome::givenUp);
    EXPECT_EQ(again(needed), Reprint::done);
    computer.files.erase("C:\\cassa\\Orbis\\a.txt");
  }
  devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  EXPECT_FALSE(neededConsent(entries().back()).fiscal);
}

TEST_F(ReprintTest, AReceiptThatMayHaveComeOutTakesConsentTwice) {
  for (const FiscalOutcome outcome : {FiscalOutcome::delivered, FiscalOutcome::confirmed}) {
    fiscalJob(outcome);
    EXPECT_EQ(again({.fiscal = true}), Reprint::maybeIssued);
    EXPECT_FALSE(computer.files.has("C:\\cassa\\Orbis\\a.txt"));
  }
  DiaryEntry unconfirmed = entries().back();
  unconfirmed.outcome = Outcome::unconfirmed;
  diary.end(unconfirmed);
  EXPECT_EQ(again({.fiscal = true}), Reprint::maybeIssued);
  EXPECT_EQ(again({.fiscal = true, .evenIfIssued = true}), Reprint::done);
}

TEST_F(ReprintTest, AJobThatWaitsThereAlreadyIsNotReplaced) {
  devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  computer.files.put("C:\\cassa\\CortOrbis\\a.txt", "altro");
  EXPECT_EQ(again(), Reprint::placeTaken);
  EXPECT_EQ(computer.files.text("C:\\cassa\\CortOrbis\\a.txt"), "altro");
}

TEST_F(ReprintTest, NothingIsPutWhereTheNextStartWouldEmptyIt) {
  devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  EXPECT_EQ(reprint(bridge, diaryAt, lastId(), {}, false), Reprint::notTaken);
  EXPECT_FALSE(computer.files.has("C:\\cassa\\CortOrbis\\a.txt"));
  devices.LanciaFileRF();
  computer.files.erase("C:\\RF\\ricevuta.txt");
  EXPECT_EQ(reprint(bridge, diaryAt, lastId(), {}, false), Reprint::done) << "the slip file is not emptied";
}

TEST_F(ReprintTest, WhatCannotBeIsSaid) {
  EXPECT_EQ(reprint(bridge, diaryAt, "030307-99", {}), Reprint::unknownId);
  devices.Cort_StampaFile("C:\\cassa\\IN\\a.txt");
  bridge.settings.Cort_Active = false;
  EXPECT_EQ(again(), Reprint::noPlace);
  bridge.settings.Cort_Active = true;
  computer.files.erase(std::string(diaryAt) + "\\" + entries().back().copy);
  EXPECT_EQ(again(), Reprint::copyGone);
  devices.Cort_StampaFile("C:\\cassa\\IN\\missing.txt");
  EXPECT_EQ(again(), Reprint::noCopy);
}

TEST_F(ReprintTest, EveryResultHasItsText) {
  for (int result = 0; result <= static_cast<int>(Reprint::notWritten); ++result)
    EXPECT_FALSE(textOf(static_cast<Reprint>(result)).empty());
}

}  // namespace
}  // namespace tellaxis
