// Signs of life: what keeps a waiting bridge from being taken for a hung one, and the status line.
#include "app/signs_of_life.h"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "app/failing_steps.h"
#include "core/attesa.h"
#include "fake/computer.h"
#include "fake/service_manager.h"

namespace tellaxis {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using testing::ElementsAre;

class SignsOfLife : public testing::Test {
 protected:
  fake::Computer computer;
  fake::ServiceManager manager;
  LivingClock clock{computer.clock, manager};
  platform::Host host = computer.host.with(clock, computer.dialogs, computer.tray);
};

TEST_F(SignsOfLife, EveryPieceOfAWaitIsOne) {
  Bridge bridge{host};
  Attesa(bridge, std::int16_t{500}, true);
  EXPECT_GE(manager.signs, 5000 / 50);
}

TEST_F(SignsOfLife, AWaitThatSpansMidnightAndDoesNotEndGivesThemAllTheWhile) {
  Bridge bridge{host};
  computer.clock.seconds = 86'398;
  int sleeps = 0;
  computer.clock.onSleep = [&] {
    if (++sleeps == 10'000) throw std::runtime_error("endless");
  };
  EXPECT_THROW(Attesa(bridge, std::int16_t{500}, true), std::runtime_error);
  EXPECT_EQ(manager.signs, sleeps - 1);
}

TEST_F(SignsOfLife, AStepThatFailsIsOne) {
  Activity activity;
  FailingSteps steps(activity, false, &manager);
  steps.failed("write", "COM1", "tempo scaduto");
  EXPECT_EQ(manager.signs, 1);
}

/// Notices that come after a while of their own, on a clock that only they move.
class SlowNotices : public platform::JobNotices {
 public:
  explicit SlowNotices(std::vector<milliseconds>& pieces) : pieces_(pieces) {}
  void watch(const std::vector<std::string>&) override {}
  bool isWhole(std::string_view) override { return true; }
  void waitFor(milliseconds duration) override {
    pieces_.push_back(duration);
    std::this_thread::sleep_for(endsEarly ? 0ms : duration);
  }
  bool endsEarly = false;

 private:
  std::vector<milliseconds>& pieces_;
};

TEST_F(SignsOfLife, ALongWaitForAFileIsWaitedPieceByPiece) {
  std::vector<milliseconds> pieces;
  manager.interval = 20ms;
  LivingNotices notices(std::make_unique<SlowNotices>(pieces), manager);
  notices.waitFor(50ms);
  EXPECT_GE(pieces.size(), 2U);
  EXPECT_LE(pieces.front(), 20ms);
  EXPECT_EQ(manager.signs, static_cast<int>(pieces.size()));
}

TEST_F(SignsOfLife, AFileThatIsWholeEndsTheWait) {
  std::vector<milliseconds> pieces;
  auto early = std::make_unique<SlowNotices>(pieces);
  early->endsEarly = true;
  LivingNotices notices(std::move(early), manager);
  notices.waitFor(90s);
  EXPECT_THAT(pieces, ElementsAre(30s));
}

TEST(StatusLine, CountsTheDevicesThatAreSwitchedOn) {
  Settings settings;
  const Activity activity;
  EXPECT_EQ(statusLine(settings, activity), "nessun dispositivo attivo");
  settings.Display_Active = true;
  EXPECT_EQ(statusLine(settings, activity), "1 dispositivo attivo");
  settings.MF_Active = settings.RF_Active = settings.Cort_Active = true;
  EXPECT_EQ(statusLine(settings, activity), "4 dispositivi attivi");
}

TEST(StatusLine, TellsWhenTheLastReceiptWentButNotOfOtherJobs) {
  fake::Computer computer;
  Settings settings;
  settings.MF_Active = settings.RF_Active = settings.Cort_Active = true;
  Activity activity;
  computer.clock.seconds = 12 * 3600 + 31 * 60;
  activity.begin(Device::courtesyPrinter, "preconto.txt");
  activity.end(computer.clock);
  EXPECT_EQ(statusLine(settings, activity), "3 dispositivi attivi");
  activity.begin(Device::fiscalPrinter, "scontrino.txt");
  activity.end(computer.clock);
  EXPECT_EQ(statusLine(settings, activity), "3 dispositivi attivi, ultimo scontrino 12:31");
}

TEST(ServiceReport, SaysWhatChangesAndThatOnce) {
  fake::Computer computer;
  fake::ServiceManager manager;
  Bridge bridge{computer.host};
  const Activity activity;
  ServiceReport report(manager, bridge, activity);
  report.goesOn(false);
  EXPECT_TRUE(manager.told.empty()) << "not before it is ready";
  report.ready();
  report.goesOn(false);
  bridge.settings.MF_Active = true;
  report.goesOn(false);
  report.goesOn(true);
  report.goesOn(true);
  EXPECT_THAT(manager.told, ElementsAre("ready", "nessun dispositivo attivo", "1 dispositivo attivo", "stopping"));
  EXPECT_EQ(manager.signs, 5);
}

}  // namespace
}  // namespace tellaxis
