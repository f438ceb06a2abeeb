// Routing: from the drop folders to the work folders and the devices.
#include "core/polling.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/polling_desk.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using test::PollingDesk;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SmistaFile : public testing::Test, protected PollingDesk {};

TEST_F(SmistaFile, MovesEveryJobBeforeTheFirstRuns) {
  drop("b.txt");
  drop("A.txt");
  route("MF");
  EXPECT_THAT(
      computer.journal.calls(),
      ElementsAre("folderExists C:\\cassa\\Orbis", "folderExists C:\\cassa\\IN", "list C:\\cassa\\Orbis\\",
                  "exists C:\\cassa\\IN\\A.txt", "move C:\\cassa\\Orbis\\A.txt -> C:\\cassa\\IN\\A.txt",
                  "exists C:\\cassa\\IN\\b.txt", "move C:\\cassa\\Orbis\\b.txt -> C:\\cassa\\IN\\b.txt",
                  "MF_Invia C:\\cassa\\IN\\A.txt", "remove C:\\cassa\\IN\\A.txt", "MF_Invia C:\\cassa\\IN\\b.txt",
                  "remove C:\\cassa\\IN\\b.txt", "write [VARIE] MF_Vuoto=-1 to C:\\cassa\\_Tellaxis.ini"));
  EXPECT_FALSE(computer.files.has("C:\\cassa\\IN\\A.txt"));
  EXPECT_FALSE(computer.files.has("C:\\cassa\\Orbis\\b.txt"));
}

TEST_F(SmistaFile, AnEmptyDropFolderOnlyRewritesTheGate) {
  route("MF");
  EXPECT_THAT(jobs(), IsEmpty());
  EXPECT_EQ(computer.journal.calls().back(), "write [VARIE] MF_Vuoto=-1 to C:\\cassa\\_Tellaxis.ini");
}

TEST_F(SmistaFile, TheNewerJobReplacesAnOlderOneOfItsName) {
  computer.files.put("C:\\cassa\\IN\\a.txt", "vecchio");
  computer.files.put("C:\\cassa\\Orbis\\a.txt", "nuovo");
  std::string handedOver;
  devices.onJob = [&](std::string_view) { handedOver = computer.files.text("C:\\cassa\\IN\\a.txt"); };
  route("MF");
  EXPECT_EQ(handedOver, "nuovo");
  EXPECT_THAT(jobs(), SizeIs(1));
}

TEST_F(SmistaFile, CreatesMissingFolders) {
  dropFolder = "C:\\altra\\Orbis";
  workFolder = "C:\\altra\\IN";
  route("MF");
  EXPECT_TRUE(computer.files.hasFolder("C:\\altra\\Orbis"));
  EXPECT_TRUE(computer.files.hasFolder("C:\\altra\\IN"));
}

TEST_F(SmistaFile, GivesItsCallersFoldersATrailingBackslash) {
  route("MF");
  EXPECT_EQ(dropFolder, "C:\\cassa\\Orbis\\");
  EXPECT_EQ(workFolder, "C:\\cassa\\IN\\");
  route("MF");
  EXPECT_EQ(dropFolder, "C:\\cassa\\Orbis\\");
}

TEST_F(SmistaFile, Runs101JobsAndLeavesTheOthersInTheWorkFolder) {
  for (int i = 1; i <= 105; ++i) drop("job" + std::to_string(1000 + i));
  route("MF");
  EXPECT_THAT(jobs(), SizeIs(101));
  EXPECT_EQ(jobs().back(), "MF_Invia C:\\cassa\\IN\\job1101");
  for (int i = 102; i <= 105; ++i) EXPECT_TRUE(computer.files.has("C:\\cassa\\IN\\job" + std::to_string(1000 + i)));
  EXPECT_FALSE(computer.files.has("C:\\cassa\\IN\\job1101"));
  computer.journal.clear();
  route("MF");
  EXPECT_THAT(jobs(), IsEmpty());
}

TEST_F(SmistaFile, AJobThatIsStillBeingWrittenStaysForTheNextPass) {
  drop("a.txt");
  computer.files.hold("C:\\cassa\\Orbis\\a.txt");
  route("MF");
  EXPECT_TRUE(computer.files.has("C:\\cassa\\Orbis\\a.txt"));
  computer.files.release("C:\\cassa\\Orbis\\a.txt");
  std::string handedOver;
  devices.onJob = [&](std::string_view) { handedOver = computer.files.text("C:\\cassa\\IN\\a.txt"); };
  route("MF");
  EXPECT_EQ(handedOver, "a.txt");
  EXPECT_FALSE(computer.files.has("C:\\cassa\\Orbis\\a.txt"));
}

TEST_F(SmistaFile, AnUnknownKindMovesAndDeletesWithoutADeviceOrAGate) {
  drop("a.txt");
  route("XX");
  EXPECT_FALSE(computer.files.has("C:\\cassa\\Orbis\\a.txt"));
  EXPECT_FALSE(computer.files.has("C:\\cassa\\IN\\a.txt"));
  EXPECT_THAT(jobs(), IsEmpty());
  EXPECT_THAT(computer.journal.callsThatBegin("write"), IsEmpty());
}

TEST_F(SmistaFile, TheSlipKindCallsNoDeviceButWritesItsGate) {
  drop("a.txt");
  route("RF");
  EXPECT_THAT(jobs(), IsEmpty());
  EXPECT_EQ(computer.journal.calls().back(), "write [VARIE] RF_Vuoto=-1 to C:\\cassa\\_Tellaxis.ini");
}

TEST_F(SmistaFile, CourtesyJobsGoToTheCourtesyPrinter) {
  drop("a.txt");
  route("CR");
  EXPECT_THAT(computer.journal.callsThatBegin("Cort_StampaFile"), ElementsAre("Cort_StampaFile C:\\cassa\\IN\\a.txt"));
  EXPECT_EQ(computer.journal.calls().back(), "write [VARIE] Cort_Vuoto=-1 to C:\\cassa\\_Tellaxis.ini");
}

TEST_F(SmistaFile, AJobThatComesWhileOthersRunWaitsForTheNextPass) {
  drop("a.txt");
  devices.onJob = [&](std::string_view) { drop("tardi.txt"); };
  route("MF");
  EXPECT_THAT(jobs(), SizeIs(1));
  EXPECT_TRUE(computer.files.has("C:\\cassa\\Orbis\\tardi.txt"));
}

TEST_F(SmistaFile, AJobThatExhaustsTheMemoryEndsItselfAlone) {
  drop("a.txt");
  drop("b.txt");
  devices.onJob = [](std::string_view operation) {
    if (operation.ends_with("a.txt")) throw std::bad_alloc();
  };
  route("MF");
  EXPECT_THAT(jobs(), ElementsAre("MF_Invia C:\\cassa\\IN\\a.txt", "MF_Invia C:\\cassa\\IN\\b.txt"));
  EXPECT_THAT(computer.trace.failures, ElementsAre("MF_Invia C:\\cassa\\IN\\a.txt: std::bad_alloc"));
  EXPECT_FALSE(computer.files.has("C:\\cassa\\IN\\a.txt"));
}

TEST_F(SmistaFile, ARequestToStopEndsThePassAndPutsBackWhatWasNotBegun) {
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) drop(name);
  bool stop = false;
  bridge.stopRequested = [&] { return stop; };
  devices.onJob = [&](std::string_view) { stop = true; };
  route("MF");
  EXPECT_THAT(jobs(), ElementsAre("MF_Invia C:\\cassa\\IN\\a.txt"));
  EXPECT_FALSE(computer.files.has("C:\\cassa\\IN\\a.txt"));
  for (const char* name : {"b.txt", "c.txt"}) {
    EXPECT_EQ(computer.files.text("C:\\cassa\\Orbis\\" + std::string(name)), name);
    EXPECT_FALSE(computer.files.has("C:\\cassa\\IN\\" + std::string(name)));
  }
}

TEST_F(SmistaFile, WhatIsPutBackDoesNotReplaceANewerJobOfItsName) {
  drop("a.txt");
  drop("b.txt");
  bool stop = false;
  bridge.stopRequested = [&] { return stop; };
  devices.onJob = [&](std::string_view) {
    stop = true;
    computer.files.put("C:\\cassa\\Orbis\\b.txt", "nuovo");
  };
  route("MF");
  EXPECT_EQ(computer.files.text("C:\\cassa\\Orbis\\b.txt"), "nuovo");
}

TEST(KeepWaiting, WhatFindsNoRoomInAPassWaitsForTheNext) {
  PollingDesk desk(platform::BridgeOptions{.keepWaiting = true});
  for (int i = 1; i <= 105; ++i) desk.drop("job" + std::to_string(1000 + i));
  desk.route("MF");
  EXPECT_THAT(desk.jobs(), SizeIs(101));
  EXPECT_TRUE(desk.computer.files.has("C:\\cassa\\Orbis\\job1102"));
  desk.route("MF");
  EXPECT_THAT(desk.jobs(), SizeIs(105));
  EXPECT_EQ(desk.jobs().back(), "MF_Invia C:\\cassa\\IN\\job1105");
}

TEST_F(SmistaFile, AFailingStepIsSkippedAndTheRestHappens) {
  const auto run = [](std::size_t failingCall) {
    PollingDesk desk;
    desk.drop("a.txt");
    desk.drop("b.txt");
    desk.computer.files.put("C:\\cassa\\IN\\b.txt", "vecchio");
    desk.computer.journal.failCall(failingCall);
    desk.route("MF");
    return desk.computer.journal.calls();
  };
  fake::sweepFailingSteps(run, {{.call = "folderExists C:\\cassa\\Orbis", .instead = {"createFolder C:\\cassa\\Orbis"}},
                                {.call = "folderExists C:\\cassa\\IN", .instead = {"createFolder C:\\cassa\\IN"}},
                                {.call = "list C:\\cassa\\Orbis\\", .dropped = 9},
                                {.call = "exists C:\\cassa\\IN\\b.txt", .dropped = 1}});
}

}  // namespace
}  // namespace tellaxis
