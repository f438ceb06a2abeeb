// Measured devices: what is counted of a job, and jobs that are tried again.
#include "metrics/measured_devices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/step_failed.h"
#include "fake/computer.h"
#include "fake/scripted_devices.h"

namespace tellaxis {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;

class MeasuredDevicesTest : public testing::Test {
 protected:
  MeasuredDevicesTest() {
    bridge.settings.RF_File = "C:\\RF\\ricevuta.txt";
    bridge.settings.Display_File = "C:\\DISP\\display.txt";
  }

  std::uint64_t count(Device device, Outcome outcome) const {
    return figures.of(device).jobs.at(static_cast<std::size_t>(outcome));
  }
  std::uint64_t measured(Device device) const { return figures.of(device).durations.upTo(Durations::limitCount); }
  void fails() { activity.failed("EndDoc", "LPT1:", "carta finita"); }

  fake::Computer computer;
  Bridge bridge{computer.host};
  fake::ScriptedDevices jobs;
  Activity activity;
  NotedDevices noted{jobs, activity, bridge};
  Figures figures;
  MeasuredDevices devices{noted, activity, bridge, figures};
};

TEST_F(MeasuredDevicesTest, AFiscalJobCountsByTheOutcomeOfItsHandOver) {
  const std::pair<FiscalOutcome, Outcome> pairs[] = {
      {FiscalOutcome::delivered, Outcome::delivered},   {FiscalOutcome::confirmed, Outcome::confirmed},
      {FiscalOutcome::unanswered, Outcome::unanswered}, {FiscalOutcome::givenUp, Outcome::givenUp},
      {FiscalOutcome::notHandedOver, Outcome::failed},
  };
  for (const auto& [atDriver, outcome] : pairs) {
    jobs.job = [&, how = atDriver] { bridge.fiscalOutcome = how; };
    devices.MF_Invia("C:\\cassa\\IN\\a.txt");
    EXPECT_EQ(count(Device::fiscalPrinter, outcome), 1U);
  }
  EXPECT_EQ(jobs.lastCall, "MF_Invia C:\\cassa\\IN\\a.txt");
  EXPECT_EQ(measured(Device::fiscalPrinter), 5U);
  EXPECT_EQ(measured(Device::courtesyPrinter), 0U);
}

TEST_F(MeasuredDevicesTest, AJobIsTimedFromItsBeginningToItsEnd) {
  jobs.job = [&] { computer.clock.sleep(1500ms); };
  const auto begun = computer.clock.sinceEpoch();
  devices.Cort_StampaFile("C:\\cassa\\CortIN\\a.txt");
  const DeviceFigures& courtesy = figures.of(Device::courtesyPrinter);
  EXPECT_EQ(courtesy.durations.sum(), 1500ms);
  EXPECT_EQ(courtesy.lastJob, begun + 1500ms);
  EXPECT_EQ(count(Device::courtesyPrinter, Outcome::done), 1U);
}

TEST_F(MeasuredDevicesTest, AJobThatLeftAtOnceCountsAndLeavesAllTheSame) {
  jobs.job = [] { throw StepFailed("fine documento"); };
  EXPECT_THROW(devices.LanciaFileRF(), StepFailed);
  EXPECT_EQ(count(Device::slipPrinter, Outcome::failed), 1U);
}

TEST_F(MeasuredDevicesTest, ASlipTriedAgainAndAgainIsOneFailedJobUntilItComesOut) {
  computer.files.put("C:\\RF\\ricevuta.txt", "x");
  jobs.job = [] { throw StepFailed("stampa"); };
  const auto first = computer.clock.sinceEpoch();
  for (int tick = 0; tick < 50; ++tick) {
    EXPECT_THROW(devices.LanciaFileRF(), StepFailed);
    computer.clock.sleep(500ms);
  }
  EXPECT_EQ(count(Device::slipPrinter, Outcome::failed), 1U);
  EXPECT_EQ(measured(Device::slipPrinter), 1U);
  EXPECT_EQ(figures.of(Device::slipPrinter).lastJob, first);
  jobs.job = [&] { computer.files.erase("C:\\RF\\ricevuta.txt"); };
  devices.LanciaFileRF();
  EXPECT_EQ(count(Device::slipPrinter, Outcome::failed), 1U);
  EXPECT_EQ(count(Device::slipPrinter, Outcome::done), 1U);
}

TEST_F(MeasuredDevicesTest, AnotherFileInThePlaceOfTheFailingOneIsAnotherJob) {
  jobs.job = [&] { fails(); };
  computer.files.put("C:\\DISP\\display.txt", "uno");
  for (int tick = 0; tick < 2; ++tick) devices.LanciaFileDisplay();
  computer.files.put("C:\\DISP\\display.txt", "due");
  for (int tick = 0; tick < 2; ++tick) devices.LanciaFileDisplay();
  EXPECT_EQ(count(Device::display, Outcome::failed), 2U);
}

TEST_F(MeasuredDevicesTest, AFailedJobWhoseFileWentIsNotTriedAgain) {
  jobs.job = [&] { fails(); };
  for (int job = 0; job < 2; ++job) devices.LanciaFileDisplay();
  EXPECT_EQ(count(Device::display, Outcome::failed), 2U);
}

TEST_F(MeasuredDevicesTest, AJobThatGoesWellCostsNoLookAtTheDisk) {
  jobs.job = [&] { bridge.fiscalOutcome = FiscalOutcome::confirmed; };
  devices.LanciaFileDisplay();
  devices.MF_Invia("a");
  devices.LanciaFileRF();
  devices.Cort_StampaFile("b");
  EXPECT_THAT(computer.journal.calls(), IsEmpty());
}

}  // namespace
}  // namespace tellaxis
