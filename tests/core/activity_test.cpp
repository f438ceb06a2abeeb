// Activity: last jobs, their times and results.
#include "core/activity.h"

#include <gtest/gtest.h>

#include <new>

#include "core/step_failed.h"
#include "fake/computer.h"
#include "fake/scripted_devices.h"

namespace tellaxis {
namespace {

class ActivityTest : public testing::Test {
 protected:
  fake::Computer computer;
  Bridge bridge{computer.host};
  fake::ScriptedDevices devices;
  Activity activity;
  NotedDevices noted{devices, activity, bridge};

  const LastJob& last(Device device) const { return activity.lastJob(device).value(); }
};

TEST_F(ActivityTest, NothingIsNotedBeforeTheFirstJob) {
  for (const Device device : {Device::display, Device::fiscalPrinter, Device::slipPrinter, Device::courtesyPrinter})
    EXPECT_FALSE(activity.lastJob(device).has_value());
}

TEST_F(ActivityTest, FiscalJobIsPassedOnAndNotedWithItsBareNameAndTime) {
  computer.clock.seconds = 10 * 3600 + 5 * 60 + 42;
  noted.MF_Invia("C:\\Tellaxis\\IN\\scontr.txt");
  EXPECT_EQ(devices.lastCall, "MF_Invia C:\\Tellaxis\\IN\\scontr.txt");
  EXPECT_EQ(last(Device::fiscalPrinter).name, "scontr.txt");
  EXPECT_EQ(last(Device::fiscalPrinter).ended.hour, 10);
  EXPECT_EQ(last(Device::fiscalPrinter).ended.minute, 5);
  EXPECT_EQ(last(Device::fiscalPrinter).second, 42);
  EXPECT_EQ(last(Device::fiscalPrinter).failure, "");
  EXPECT_FALSE(activity.lastJob(Device::courtesyPrinter).has_value());
}

TEST_F(ActivityTest, EveryDeviceHasItsOwnLastJob) {
  bridge.settings.Display_File = "C:\\DISP\\display.txt";
  bridge.settings.RF_File = "C:\\RF\\ricevuta.txt";
  noted.LanciaFileDisplay();
  noted.LanciaFileRF();
  EXPECT_EQ(devices.lastCall, "LanciaFileRF");
  noted.Cort_StampaFile("preconto.txt");
  EXPECT_EQ(last(Device::display).name, "display.txt");
  EXPECT_EQ(last(Device::slipPrinter).name, "ricevuta.txt");
  EXPECT_EQ(last(Device::courtesyPrinter).name, "preconto.txt");
}

TEST_F(ActivityTest, FirstFailingStepOfAJobIsItsResult) {
  devices.job = [this] {
    activity.failed("copy", "C:\\a", "manca");
    activity.failed("start", "driver.exe", "non trovato");
  };
  noted.MF_Invia("a");
  EXPECT_EQ(last(Device::fiscalPrinter).failure, "copy C:\\a: manca");
}

TEST_F(ActivityTest, ABlankValueThatIsPassedOverIsNoFailure) {
  devices.job = [this] {
    activity.failed("FontName", "", "nome vuoto");
    activity.failed("EndDoc", "LPT1:", "carta finita");
  };
  noted.Cort_StampaFile("a");
  EXPECT_EQ(last(Device::courtesyPrinter).failure, "EndDoc LPT1:: carta finita");
}

TEST_F(ActivityTest, StepsThatFailBetweenJobsBelongToNone) {
  noted.MF_Invia("a");
  activity.failed("remove", "C:\\a", "manca");
  EXPECT_EQ(last(Device::fiscalPrinter).failure, "");
  noted.MF_Invia("b");
  EXPECT_EQ(last(Device::fiscalPrinter).failure, "");
}

TEST_F(ActivityTest, AJobThatLeftAtOnceIsNotedAndLeavesAllTheSame) {
  bridge.settings.RF_File = "C:\\RF\\ricevuta.txt";
  devices.job = [] { throw StepFailed("EndDoc"); };
  EXPECT_THROW(noted.LanciaFileRF(), StepFailed);
  EXPECT_EQ(last(Device::slipPrinter).failure, "stampa C:\\RF\\ricevuta.txt: EndDoc");
}

TEST_F(ActivityTest, AJobThatExhaustedTheMemoryIsNotedToo) {
  devices.job = [] { throw std::bad_alloc(); };
  EXPECT_THROW(noted.MF_Invia("C:\\IN\\a"), std::bad_alloc);
  EXPECT_EQ(last(Device::fiscalPrinter).failure, "stampa C:\\IN\\a: std::bad_alloc");
}

TEST_F(ActivityTest, SomebodyElseMayHearOfEveryFailingStep) {
  activity.alsoTell(&computer.trace);
  devices.job = [this] {
    activity.failed("copy", "C:\\a", "manca");
    activity.failed("copy", "", "nome vuoto");
  };
  noted.Cort_StampaFile("a");
  activity.failed("remove", "C:\\a", "manca");
  EXPECT_EQ(computer.trace.failures.size(), 3U);
  activity.alsoTell(nullptr);
  activity.failed("remove", "C:\\a", "manca");
  EXPECT_EQ(computer.trace.failures.size(), 3U);
}

TEST_F(ActivityTest, AGoodJobClearsTheFailureBefore) {
  devices.job = [this] { activity.failed("copy", "C:\\a", "manca"); };
  noted.Cort_StampaFile("a");
  devices.job = [] {};
  noted.Cort_StampaFile("b");
  EXPECT_EQ(last(Device::courtesyPrinter).failure, "");
  EXPECT_EQ(last(Device::courtesyPrinter).name, "b");
}

}  // namespace
}  // namespace tellaxis
