// Device status: the strip's words for a device that works, fails or waits for paper.
#include "ui/model/device_status.h"

#include <gtest/gtest.h>

#include "core/paper.h"
#include "fake/computer.h"

namespace tellaxis::ui {
namespace {

struct CourtesyPrinter : JobPrinters {
  std::optional<platform::InstalledPrinter> printerOf(Device device) override {
    if (device != Device::courtesyPrinter) return std::nullopt;
    return platform::InstalledPrinter{.DeviceName = "POS", .Port = "COM3:", .waitForPaper = true};
  }
};

class DeviceStatusTest : public testing::Test {
 protected:
  DeviceStatusTest() {
    computer.clock.seconds = 10 * 3600 + 5 * 60 + 42;
    computer.Printer.installed = {{"POS", "COM3:"}};
    bridge.settings.Cort_Active = true;
  }

  void job(std::string_view name) {
    activity.begin(Device::courtesyPrinter, name);
    activity.end(computer.clock);
  }
  DeviceStatus status(Device device = Device::courtesyPrinter) { return statusOf(bridge, activity, device); }

  fake::Computer computer;
  Bridge bridge{computer.host, {.waitForPaper = true}};
  Activity activity;
  CourtesyPrinter printers;
  std::unique_ptr<Paper> paper = Paper::open(bridge, printers);
};

TEST_F(DeviceStatusTest, BeforeTheFirstJobThereIsNone) {
  EXPECT_TRUE(status().active);
  EXPECT_EQ(status().state, "attivo");
  EXPECT_EQ(status().line, "nessun lavoro");
  EXPECT_FALSE(status().failed);
}

TEST_F(DeviceStatusTest, ADeviceThatIsOffSaysSo) {
  EXPECT_FALSE(status(Device::slipPrinter).active);
  EXPECT_EQ(status(Device::slipPrinter).state, "non attiva");
  EXPECT_EQ(status(Device::display).state, "non attivo");
}

TEST_F(DeviceStatusTest, AJobIsShownWithItsTime) {
  job("a.txt");
  EXPECT_EQ(status().line, "10:05:42 a.txt eseguito");
  EXPECT_FALSE(status().failed);
}

TEST_F(DeviceStatusTest, OfAFailingJobTheFirstStepIsInTheHelp) {
  activity.begin(Device::courtesyPrinter, "a.txt");
  activity.failed("Print", "POS", "scrittura non riuscita");
  activity.end(computer.clock);
  EXPECT_EQ(status().line, "10:05:42 a.txt con errori");
  EXPECT_TRUE(status().failed);
  EXPECT_TRUE(status().help.ends_with("Print POS: scrittura non riuscita")) << status().help;
}

TEST_F(DeviceStatusTest, AJobThatDidNotComeOutNamesWhatThePrinterSays) {
  job("a.txt");
  activity.printerSaysNo(Device::courtesyPrinter, "manca la carta");
  EXPECT_EQ(status().line, "10:05:42 a.txt: manca la carta");
  EXPECT_TRUE(status().failed);
  EXPECT_FALSE(status().heldBack);
}

TEST_F(DeviceStatusTest, JobsThatWaitForPaperSayForWhat) {
  bridge.paper = paper.get();
  job("a.txt");
  for (const auto& [state, words] : {std::pair(platform::PrinterState::noPaper, "manca la carta"),
                                     std::pair(platform::PrinterState::coverOpen, "il coperchio \xE8 aperto")}) {
    computer.Printer.states["POS"] = state;
    computer.clock.seconds += 2;
    paper->beginTick();
    ASSERT_FALSE(paper->mayBegin(Device::courtesyPrinter));
    EXPECT_TRUE(status().heldBack);
    EXPECT_EQ(status().line, words);
    EXPECT_EQ(status().help, std::string("I lavori aspettano: ") + words);
  }
  paper->beginTick();
  EXPECT_FALSE(status().heldBack);
  EXPECT_EQ(status().line, "10:05:42 a.txt eseguito");
}

}  // namespace
}  // namespace tellaxis::ui
