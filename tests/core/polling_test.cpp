// Polling: one tick over the devices, and the router from drop folders to devices.
#include "core/polling.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "core/fake_devices.h"
#include "core/ini/ini.h"
#include "core/step_failed.h"
#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::string_view file = "C:\\cassa\\_Tellaxis.ini";

/// A cash desk with empty job folders and all devices active, ready to be polled.
struct Desk {
  explicit Desk(platform::BridgeOptions options = {}) : bridge(computer.host, std::move(options)) {
    Settings& settings = bridge.settings;
    setMainFolder(settings, "C:\\cassa");
    for (const char* folder : {"C:\\cassa\\CortOrbis", "C:\\cassa\\CortIN", "C:\\cassa\\Orbis", "C:\\cassa\\IN"})
      computer.files.addFolder(folder);
    settings.Display_Active = settings.MF_Active = settings.RF_Active = settings.Cort_Active = true;
    settings.Display_File = "C:\\display.txt";
    settings.MF_File = "C:\\mf\\in.txt";
    settings.MF_File_Output = "C:\\mf\\out.txt";
    settings.RF_File = "C:\\rf.txt";
    settings.RF_Stampante = "EPSON TM-L90 Receipt";
    settings.RF_Seriale = std::string("LPT1:");
  }

  void drop(std::string_view name) { computer.files.put("C:\\cassa\\Orbis\\" + std::string(name), name); }
  void gate(std::string_view key, std::string_view value) { computer.profiles.put(file, "Varie", key, value); }
  void route(std::string_view kind) { SmistaFile(bridge, devices, dropFolder, file, workFolder, kind); }
  std::vector<std::string> jobs() { return computer.journal.callsThatBegin("MF_Invia"); }

  fake::Computer computer;
  Bridge bridge;
  fake::Devices devices{computer.journal};
  Polling polling{bridge, devices};
  std::string dropFolder = "C:\\cassa\\Orbis";
  std::string workFolder = "C:\\cassa\\IN";
};

class SmistaFile : public testing::Test, protected Desk {};
class Tick : public testing::Test, protected Desk {};

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
  Desk desk(platform::BridgeOptions{.keepWaiting = true});
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
    Desk desk;
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

TEST_F(Tick, PollsTheDevicesInOrder) {
  computer.files.put("C:\\display.txt", "x");
  computer.files.put("C:\\rf.txt", "x");
  computer.files.put("C:\\mf\\out.txt", "x");
  drop("a.txt");
  computer.files.put("C:\\cassa\\CortOrbis\\c.txt", "x");
  polling.Timer1_Timer();
  EXPECT_THAT(
      computer.journal.calls(),
      ElementsAre("exists C:\\display.txt", "LanciaFileDisplay", "read [VARIE] MF_Vuoto of C:\\cassa\\_Tellaxis.ini",
                  "exists C:\\mf\\out.txt", "remove C:\\mf\\out.txt", "folderExists C:\\cassa\\Orbis",
                  "folderExists C:\\cassa\\IN", "list C:\\cassa\\Orbis\\", "exists C:\\cassa\\IN\\a.txt",
                  "move C:\\cassa\\Orbis\\a.txt -> C:\\cassa\\IN\\a.txt", "MF_Invia C:\\cassa\\IN\\a.txt",
                  "remove C:\\cassa\\IN\\a.txt", "write [VARIE] MF_Vuoto=-1 to C:\\cassa\\_Tellaxis.ini",
                  "write [VARIE] MF_Vuoto=-1 to C:\\cassa\\_Tellaxis.ini", "exists C:\\rf.txt", "LanciaFileRF",
                  "read [VARIE] Cort_Vuoto of C:\\cassa\\_Tellaxis.ini", "folderExists C:\\cassa\\CortOrbis",
                  "folderExists C:\\cassa\\CortIN", "list C:\\cassa\\CortOrbis\\", "exists C:\\cassa\\CortIN\\c.txt",
                  "move C:\\cassa\\CortOrbis\\c.txt -> C:\\cassa\\CortIN\\c.txt",
                  "Cort_StampaFile C:\\cassa\\CortIN\\c.txt", "remove C:\\cassa\\CortIN\\c.txt",
                  "write [VARIE] Cort_Vuoto=-1 to C:\\cassa\\_Tellaxis.ini",
                  "write [VARIE] Cort_Vuoto=-1 to C:\\cassa\\_Tellaxis.ini"));
}

TEST_F(Tick, AClosedGatePilesJobsUpUntilItOpens) {
  drop("a.txt");
  for (const char* closed : {"0", "Falso", "False"}) {
    gate("MF_Vuoto", closed);
    polling.Timer1_Timer();
    EXPECT_THAT(jobs(), IsEmpty()) << closed;
    EXPECT_TRUE(computer.files.has("C:\\cassa\\Orbis\\a.txt"));
  }
  gate("MF_Vuoto", "-1");
  polling.Timer1_Timer();
  EXPECT_THAT(jobs(), SizeIs(1));
}

TEST_F(Tick, AClosedCourtesyGateHoldsCourtesyJobs) {
  gate("Cort_Vuoto", "0");
  computer.files.put("C:\\cassa\\CortOrbis\\c.txt", "x");
  polling.Timer1_Timer();
  EXPECT_TRUE(computer.files.has("C:\\cassa\\CortOrbis\\c.txt"));
}

TEST_F(Tick, WithoutADriverInputFileThereIsNoFiscalRouting) {
  bridge.settings.MF_File.clear();
  drop("a.txt");
  polling.Timer1_Timer();
  EXPECT_THAT(jobs(), IsEmpty());
  EXPECT_TRUE(computer.files.has("C:\\cassa\\Orbis\\a.txt"));
}

TEST_F(Tick, InactiveDevicesLeaveTheirFilesUntouched) {
  Settings& settings = bridge.settings;
  settings.Display_Active = settings.MF_Active = settings.RF_Active = settings.Cort_Active = false;
  computer.files.put("C:\\cassa\\CortOrbis\\c.txt", "x");
  computer.files.put("C:\\display.txt", "x");
  computer.files.put("C:\\rf.txt", "x");
  drop("a.txt");
  polling.Timer1_Timer();
  EXPECT_THAT(computer.journal.calls(), IsEmpty());
  EXPECT_TRUE(computer.files.has("C:\\cassa\\CortOrbis\\c.txt"));
}

TEST_F(Tick, TheSlipPrinterNeedsAPrinterAndAPort) {
  computer.files.put("C:\\rf.txt", "x");
  bridge.settings.RF_Seriale = no;
  polling.Timer1_Timer();
  bridge.settings.RF_Seriale = std::string("  ");
  polling.Timer1_Timer();
  bridge.settings.RF_Seriale = std::string("LPT1:");
  bridge.settings.RF_Stampante.clear();
  polling.Timer1_Timer();
  EXPECT_THAT(computer.journal.callsThatBegin("LanciaFileRF"), IsEmpty());
}

TEST_F(Tick, ASlipJobThatFailsDoesNotKeepTheCourtesyPrinterWaiting) {
  computer.files.put("C:\\rf.txt", "x");
  computer.files.put("C:\\cassa\\CortOrbis\\c.txt", "x");
  devices.onJob = [](std::string_view operation) {
    if (operation == "LanciaFileRF") throw StepFailed("Print");
  };
  polling.Timer1_Timer();
  EXPECT_THAT(computer.journal.callsThatBegin("Cort_StampaFile"), SizeIs(1));
  EXPECT_THAT(computer.trace.failures, ElementsAre("LanciaFileRF C:\\rf.txt: Print"));
}

TEST_F(Tick, AJobOfAnyDeviceThatExhaustsTheMemoryEndsItselfAlone) {
  computer.files.put("C:\\display.txt", "x");
  computer.files.put("C:\\rf.txt", "x");
  computer.files.put("C:\\cassa\\CortOrbis\\c.txt", "x");
  drop("a.txt");
  devices.onJob = [](std::string_view) { throw std::bad_alloc(); };
  polling.Timer1_Timer();
  EXPECT_THAT(computer.trace.failures,
              ElementsAre("LanciaFileDisplay C:\\display.txt: std::bad_alloc",
                          "MF_Invia C:\\cassa\\IN\\a.txt: std::bad_alloc", "LanciaFileRF C:\\rf.txt: std::bad_alloc",
                          "Cort_StampaFile C:\\cassa\\CortIN\\c.txt: std::bad_alloc"));
  devices.onJob = nullptr;
  drop("b.txt");
  polling.Timer1_Timer();
  EXPECT_EQ(jobs().back(), "MF_Invia C:\\cassa\\IN\\b.txt");
}

TEST_F(Tick, AfterARequestToStopNoDeviceIsGivenAnotherJob) {
  computer.files.put("C:\\rf.txt", "x");
  computer.files.put("C:\\cassa\\CortOrbis\\c.txt", "x");
  drop("a.txt");
  bool stop = false;
  bridge.stopRequested = [&] { return stop; };
  devices.onJob = [&](std::string_view) { stop = true; };
  polling.Timer1_Timer();
  EXPECT_THAT(jobs(), SizeIs(1));
  EXPECT_THAT(computer.journal.callsThatBegin("LanciaFileRF"), IsEmpty());
  EXPECT_TRUE(computer.files.has("C:\\cassa\\CortOrbis\\c.txt"));
}

TEST_F(Tick, ASlipThatFailedSlowlyRestsTenTimesAsLongAndAtMostThirtySeconds) {
  computer.files.put("C:\\rf.txt", "x");
  const auto attempts = [this] { return computer.journal.callsThatBegin("LanciaFileRF").size(); };
  double took = 2;
  devices.onJob = [&](std::string_view operation) {
    if (operation != "LanciaFileRF") return;
    computer.clock.seconds += took;
    throw StepFailed("Print");
  };
  polling.Timer1_Timer();
  computer.clock.seconds += 19;
  polling.Timer1_Timer();
  EXPECT_EQ(attempts(), 1U) << "the other devices are served meanwhile";
  computer.clock.seconds += 2;
  took = 10;
  polling.Timer1_Timer();
  EXPECT_EQ(attempts(), 2U);
  computer.clock.seconds += 31;
  took = 0;
  polling.Timer1_Timer();
  polling.Timer1_Timer();
  EXPECT_EQ(attempts(), 4U) << "a failure that took no time is tried again at once";
}

TEST_F(Tick, ASlipsRestEndsWhenTheClockIsSetBack) {
  computer.files.put("C:\\rf.txt", "x");
  devices.onJob = [&](std::string_view operation) {
    if (operation != "LanciaFileRF") return;
    computer.clock.seconds += 2;
    throw StepFailed("Print");
  };
  polling.Timer1_Timer();
  computer.clock.seconds -= 3600;
  polling.Timer1_Timer();
  EXPECT_EQ(computer.journal.callsThatBegin("LanciaFileRF").size(), 2U);
}

TEST_F(Tick, DoesNothingWhileAnotherIsUnderWay) {
  drop("a.txt");
  devices.onJob = [this](std::string_view operation) {
    if (!operation.starts_with("MF_Invia")) return;
    const auto before = computer.journal.calls();
    polling.Timer1_Timer();
    EXPECT_EQ(computer.journal.calls(), before);
  };
  polling.Timer1_Timer();
  EXPECT_THAT(jobs(), SizeIs(1));
  drop("b.txt");
  devices.onJob = nullptr;
  polling.Timer1_Timer();
  EXPECT_THAT(jobs(), SizeIs(2));
}

TEST_F(Tick, AFailingStepIsSkippedAndTheRestHappens) {
  const auto run = [](std::size_t failingCall) {
    Desk desk;
    desk.computer.files.put("C:\\display.txt", "x");
    desk.computer.files.put("C:\\mf\\out.txt", "x");
    desk.computer.files.put("C:\\rf.txt", "x");
    desk.computer.journal.failCall(failingCall);
    desk.polling.Timer1_Timer();
    return desk.computer.journal.calls();
  };
  fake::sweepFailingSteps(
      run, {{.call = "exists C:\\display.txt", .dropped = 1},
            {.call = "exists C:\\mf\\out.txt", .dropped = 1},
            {.call = "exists C:\\rf.txt", .dropped = 1},
            {.call = "folderExists C:\\cassa\\Orbis", .instead = {"createFolder C:\\cassa\\Orbis"}},
            {.call = "folderExists C:\\cassa\\IN", .instead = {"createFolder C:\\cassa\\IN"}},
            {.call = "folderExists C:\\cassa\\CortOrbis", .instead = {"createFolder C:\\cassa\\CortOrbis"}},
            {.call = "folderExists C:\\cassa\\CortIN", .instead = {"createFolder C:\\cassa\\CortIN"}}});
}

}  // namespace
}  // namespace tellaxis
