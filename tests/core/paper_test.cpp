// Paper: when printers are asked, jobs that wait for paper, and what the device's last job says.
#include "core/paper.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include "core/fake_devices.h"
#include "core/polling.h"
#include "core/step_failed.h"
#include "fake/computer.h"

namespace tellaxis {
namespace {

using namespace std::chrono_literals;
using platform::PrinterState;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Courtesy jobs come out of "POS", slips out of "L90".
struct TwoPrinters : JobPrinters {
  bool waits = false;
  std::optional<platform::InstalledPrinter> printerOf(Device device) override {
    if (device == Device::courtesyPrinter) return platform::InstalledPrinter{"POS", "COM3:", waits};
    if (device == Device::slipPrinter) return platform::InstalledPrinter{"L90", "LPT1:", waits};
    return std::nullopt;
  }
};

struct Options {
  bool diary = false;
  bool metrics = false;
  bool waits = false;
};

struct Desk {
  explicit Desk(Options options)
      : bridge(computer.host, {.diary = options.diary ? "diario" : "",
                               .metrics = options.metrics ? "m.prom" : "",
                               .waitForPaper = options.waits}) {
    printers.waits = options.waits;
    computer.Printer.installed = {{"POS", "COM3:"}, {"L90", "LPT1:"}};
    Settings& settings = bridge.settings;
    setMainFolder(settings, "C:\\cassa");
    for (const char* folder : {"C:\\cassa\\CortOrbis", "C:\\cassa\\CortIN"}) computer.files.addFolder(folder);
    settings.RF_Active = settings.Cort_Active = true;
    settings.RF_File = "C:\\rf.txt";
    settings.RF_Stampante = "L90";
    settings.RF_Seriale = std::string("LPT1:");
    paper = Paper::open(bridge, printers);
    bridge.paper = paper.get();
  }

  void drop(std::string_view name) { computer.files.put("C:\\cassa\\CortOrbis\\" + std::string(name), name); }
  bool waiting(std::string_view name) const { return computer.files.has("C:\\cassa\\CortOrbis\\" + std::string(name)); }
  void says(PrinterState state) { computer.Printer.states["POS"] = computer.Printer.states["L90"] = state; }
  std::vector<std::string> questions() { return computer.journal.callsThatBegin("state"); }
  std::vector<std::string> printed() { return computer.journal.callsThatBegin("Cort_StampaFile"); }
  void tick() { polling.Timer1_Timer(); }
  void tickAfter(double seconds) {
    computer.clock.seconds += seconds;
    tick();
  }

  fake::Computer computer;
  Bridge bridge;
  TwoPrinters printers;
  std::unique_ptr<Paper> paper;
  fake::Devices devices{computer.journal};
  Activity activity;
  NotedDevices noted{devices, activity, bridge};
  Polling polling{bridge, noted};
};

TEST(PaperIsOff, NoPrinterIsEverAsked) {
  Desk desk({});
  EXPECT_EQ(desk.bridge.paper, nullptr);
  desk.says(PrinterState::noPaper);
  desk.drop("a.txt");
  desk.computer.files.put("C:\\rf.txt", "RR uno");
  desk.tick();
  EXPECT_THAT(desk.printed(), SizeIs(1));
  EXPECT_THAT(desk.computer.journal.callsThatBegin("LanciaFileRF"), SizeIs(1));
  EXPECT_THAT(desk.questions(), IsEmpty());
  EXPECT_EQ(desk.activity.lastJob(Device::courtesyPrinter)->failure, "");
}

TEST(PaperIsOff, APrinterThatDoesNotWaitIsNotAskedForAnotherThatDoes) {
  Desk desk({.waits = true});
  desk.printers.waits = false;
  desk.drop("a.txt");
  desk.tick();
  EXPECT_THAT(desk.printed(), SizeIs(1));
  EXPECT_THAT(desk.questions(), IsEmpty());
}

TEST(PaperWithADiary, NoPrinterIsAskedInAnIdleTick) {
  Desk desk({.diary = true, .waits = true});
  desk.tick();
  EXPECT_THAT(desk.questions(), IsEmpty());
}

TEST(PaperWithADiary, ThePrinterIsAskedBeforeTheJobAndAfterIt) {
  Desk desk({.diary = true});
  desk.drop("a.txt");
  desk.tick();
  EXPECT_THAT(desk.questions(), ElementsAre("state POS", "state POS"));
  const auto& calls = desk.computer.journal.calls();
  const auto job = std::find(calls.begin(), calls.end(), "Cort_StampaFile C:\\cassa\\CortIN\\a.txt");
  EXPECT_EQ(std::count(calls.begin(), job, "state POS"), 1);
  EXPECT_EQ(desk.activity.lastJob(Device::courtesyPrinter)->failure, "");
}

TEST(PaperWithMetrics, ThePrinterIsAskedBeforeTheJobAndAfterItAndWhatItSaidIsKnown) {
  Desk desk({.metrics = true});
  EXPECT_EQ(desk.paper->lastSaid(Device::courtesyPrinter), std::nullopt);
  desk.devices.onJob = [&](std::string_view) {
    EXPECT_EQ(desk.paper->lastSaid(Device::courtesyPrinter), PrinterState::ready);
    desk.says(PrinterState::noPaper);
  };
  desk.drop("a.txt");
  desk.tick();
  EXPECT_THAT(desk.questions(), ElementsAre("state POS", "state POS"));
  EXPECT_EQ(desk.paper->lastSaid(Device::courtesyPrinter), PrinterState::noPaper);
  EXPECT_EQ(desk.paper->lastSaid(Device::slipPrinter), std::nullopt);
  EXPECT_EQ(desk.activity.lastJob(Device::courtesyPrinter)->failure, "manca la carta");
}

TEST(PaperWithADiary, JobsDoNotWait) {
  Desk desk({.diary = true});
  desk.says(PrinterState::noPaper);
  desk.drop("a.txt");
  desk.tick();
  EXPECT_THAT(desk.printed(), SizeIs(1));
}

TEST(PaperWithADiary, WhatThePrinterSaysAfterTheJobIsTheJobsFailure) {
  const std::pair<PrinterState, std::string_view> rows[] = {
      {PrinterState::ready, ""},
      {PrinterState::paperLow, ""},
      {PrinterState::unknown, ""},
      {PrinterState::noPaper, "manca la carta"},
      {PrinterState::coverOpen, "il coperchio \xE8 aperto"},
      {PrinterState::offLine, "la stampante non \xE8 in linea"},
      {PrinterState::error, "la stampante segnala un errore"},
  };
  for (const auto& [state, failure] : rows) {
    Desk desk({.diary = true});
    desk.devices.onJob = [&, now = state](std::string_view) { desk.says(now); };
    desk.drop("a.txt");
    desk.computer.files.put("C:\\rf.txt", "RR uno");
    desk.tick();
    EXPECT_EQ(desk.activity.lastJob(Device::courtesyPrinter)->failure, failure);
    EXPECT_EQ(desk.activity.lastJob(Device::slipPrinter)->failure, failure);
  }
}

TEST(PaperWithADiary, ItCountsBeforeAStepThatFailedForIt) {
  Desk desk({.diary = true});
  desk.devices.onJob = [&](std::string_view) {
    desk.activity.failed("EndDoc", "POS", "la stampante non accetta dati");
    desk.says(PrinterState::coverOpen);
  };
  desk.drop("a.txt");
  desk.tick();
  EXPECT_EQ(desk.activity.lastJob(Device::courtesyPrinter)->failure, "il coperchio \xE8 aperto");
}

TEST(PaperWithADiary, ASlipThatLeavesByAFailureIsAskedForToo) {
  Desk desk({.diary = true});
  desk.devices.onJob = [&](std::string_view) {
    desk.says(PrinterState::noPaper);
    throw StepFailed("stampa");
  };
  desk.computer.files.put("C:\\rf.txt", "RR uno");
  desk.tick();
  EXPECT_EQ(desk.activity.lastJob(Device::slipPrinter)->failure, "manca la carta");
}

TEST(PaperWithADiary, APrinterThatDoesNotAnswerIsAskedOnceAJob) {
  Desk desk({.diary = true});
  desk.says(PrinterState::unknown);
  desk.drop("a.txt");
  desk.tick();
  EXPECT_THAT(desk.questions(), SizeIs(1));
}

TEST(WaitForPaper, JobsStayInTheirFolderWhileThePrinterSaysNo) {
  for (const PrinterState no :
       {PrinterState::noPaper, PrinterState::coverOpen, PrinterState::offLine, PrinterState::error}) {
    Desk desk({.waits = true});
    desk.says(no);
    desk.drop("a.txt");
    desk.computer.files.put("C:\\rf.txt", "RR uno");
    for (int i = 0; i < 5; ++i) desk.tickAfter(0.5);
    EXPECT_TRUE(desk.waiting("a.txt"));
    EXPECT_TRUE(desk.computer.files.has("C:\\rf.txt"));
    EXPECT_THAT(desk.printed(), IsEmpty());
    EXPECT_THAT(desk.computer.journal.callsThatBegin("LanciaFileRF"), IsEmpty());
  }
}

TEST(WaitForPaper, ItIsKnownWhatADeviceIsHeldBackFor) {
  Desk desk({.waits = true});
  const auto held = [&desk] { return desk.paper->heldBack(Device::courtesyPrinter); };
  desk.says(PrinterState::coverOpen);
  desk.tick();
  EXPECT_EQ(held(), std::nullopt);
  desk.drop("a.txt");
  for (int i = 0; i < 4; ++i) {
    desk.tickAfter(0.4);
    EXPECT_EQ(held(), PrinterState::coverOpen);
  }
  EXPECT_EQ(desk.paper->heldBack(Device::slipPrinter), std::nullopt);
  desk.says(PrinterState::ready);
  desk.tickAfter(2);
  EXPECT_EQ(held(), std::nullopt);
}

TEST(WaitForPaper, ADeviceWhoseJobWasTakenAwayIsNotHeldBackAnyMore) {
  Desk desk({.waits = true});
  desk.says(PrinterState::noPaper);
  desk.drop("a.txt");
  desk.tick();
  EXPECT_EQ(desk.paper->heldBack(Device::courtesyPrinter), PrinterState::noPaper);
  desk.computer.files.erase("C:\\cassa\\CortOrbis\\a.txt");
  desk.tick();
  EXPECT_EQ(desk.paper->heldBack(Device::courtesyPrinter), std::nullopt);
}

TEST(WaitForPaper, APrinterThatCanPrintOrDoesNotSayGetsItsJobs) {
  for (const PrinterState yes : {PrinterState::ready, PrinterState::paperLow, PrinterState::unknown}) {
    Desk desk({.waits = true});
    desk.says(yes);
    desk.drop("a.txt");
    desk.tick();
    EXPECT_THAT(desk.printed(), SizeIs(1));
  }
}

TEST(WaitForPaper, AllComesOutOnceAndInOrderWhenThePaperIsBack) {
  Desk desk({.waits = true});
  desk.says(PrinterState::noPaper);
  for (const char* name : {"c.txt", "a.txt", "b.txt"}) desk.drop(name);
  desk.tick();
  desk.says(PrinterState::ready);
  desk.tickAfter(1);
  desk.tickAfter(1);
  EXPECT_THAT(desk.printed(),
              ElementsAre("Cort_StampaFile C:\\cassa\\CortIN\\a.txt", "Cort_StampaFile C:\\cassa\\CortIN\\b.txt",
                          "Cort_StampaFile C:\\cassa\\CortIN\\c.txt"));
}

TEST(WaitForPaper, WhenThePaperEndsInAPassTheJobsBehindItStay) {
  Desk desk({.waits = true});
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) desk.drop(name);
  desk.devices.onJob = [&](std::string_view) {
    if (desk.printed().size() == 2) desk.says(PrinterState::noPaper);
  };
  desk.tick();
  EXPECT_THAT(desk.printed(), SizeIs(2));
  EXPECT_TRUE(desk.waiting("c.txt"));
  EXPECT_FALSE(desk.computer.files.has("C:\\cassa\\CortIN\\c.txt"));
  desk.says(PrinterState::ready);
  desk.tickAfter(1);
  EXPECT_THAT(desk.printed(), SizeIs(3));
}

TEST(WaitForPaper, MoreJobsThanAPassHoldsAllComeOut) {
  Desk desk({.waits = true});
  for (int i = 1001; i <= 1250; ++i) desk.drop(std::to_string(i));
  for (int i = 0; i < 3; ++i) desk.tickAfter(1);
  EXPECT_THAT(desk.printed(), SizeIs(250));
  EXPECT_EQ(desk.printed().back(), "Cort_StampaFile C:\\cassa\\CortIN\\1250");
}

TEST(WaitForPaper, ThePrinterIsAskedOnceASecondAtMost) {
  Desk desk({.waits = true});
  desk.says(PrinterState::noPaper);
  desk.drop("a.txt");
  desk.tick();
  for (int i = 0; i < 9; ++i) desk.tickAfter(0.1);
  EXPECT_THAT(desk.questions(), SizeIs(1));
  desk.tickAfter(0.2);
  EXPECT_THAT(desk.questions(), SizeIs(2));
}

TEST(WaitForPaper, AClockThatWasSetBackDoesNotKeepTheJobs) {
  Desk desk({.waits = true});
  desk.says(PrinterState::noPaper);
  desk.drop("a.txt");
  desk.tick();
  desk.says(PrinterState::ready);
  desk.tickAfter(-60);
  EXPECT_THAT(desk.printed(), SizeIs(1));
}

TEST(WaitForPaper, TheOtherDevicesGoOn) {
  Desk desk({.waits = true});
  desk.computer.Printer.states["POS"] = PrinterState::noPaper;
  desk.drop("a.txt");
  desk.computer.files.put("C:\\rf.txt", "RR uno");
  desk.tick();
  EXPECT_THAT(desk.printed(), IsEmpty());
  EXPECT_THAT(desk.computer.journal.callsThatBegin("LanciaFileRF"), SizeIs(1));
}

TEST(WaitForPaper, ARequestToStopEndsThePassBetweenTwoJobs) {
  Desk desk({.waits = true});
  for (const char* name : {"a.txt", "b.txt"}) desk.drop(name);
  bool stop = false;
  desk.bridge.stopRequested = [&] { return stop; };
  desk.devices.onJob = [&](std::string_view) { stop = true; };
  desk.tick();
  EXPECT_THAT(desk.printed(), SizeIs(1));
  EXPECT_TRUE(desk.waiting("b.txt"));
}

}  // namespace
}  // namespace tellaxis
