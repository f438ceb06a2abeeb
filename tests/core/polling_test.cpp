// Polling: one tick over the devices.
#include "core/polling.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "core/ini/ini.h"
#include "core/polling_desk.h"
#include "core/step_failed.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using test::PollingDesk;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class Tick : public testing::Test, protected PollingDesk {};

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
    PollingDesk desk;
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
