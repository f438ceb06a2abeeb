// One-shot: single operations without the start-up.
#include "app/one_shot.h"

#include "connect/ftp.h"
#include "connect/schedule.h"
#include "core/bridge.h"
#include "core/settings.h"

namespace tellaxis {

namespace {

/// The computer's clock, whose calendar stands at a given minute.
class PretendedClock : public platform::Clock {
 public:
  PretendedClock(platform::Clock& clock, const std::optional<platform::DateTime>& now) : clock_(clock), now_(now) {}

  double secondsSinceMidnight() override { return clock_.secondsSinceMidnight(); }
  platform::DateTime now() override { return now_ ? *now_ : clock_.now(); }
  void sleep(std::chrono::milliseconds duration) override { clock_.sleep(duration); }

 private:
  platform::Clock& clock_;
  const std::optional<platform::DateTime>& now_;
};

}  // namespace

bool transferOnce(platform::Host& host, const std::string& mainFolder) {
  Bridge bridge(host);
  setMainFolder(bridge.settings, mainFolder);
  return EseguiFTP(bridge);
}

void runScheduledOnce(platform::Host& host, const std::string& mainFolder, const std::string& stationRole,
                      const std::optional<platform::DateTime>& now) {
  PretendedClock clock(host.clock, now);
  platform::Host pretended = host.with(clock, host.dialogs, host.tray);
  Bridge bridge(pretended);
  setMainFolder(bridge.settings, mainFolder);
  loadPointOfSaleFolder(bridge);
  bridge.form.Postazione.Text = stationRole;
  OperazioniPianificate(bridge);
}

int runOnce(platform::Host& host, const CommandLine& line, const std::string& mainFolder) {
  if (line.command == Command::ftp) return transferOnce(host, mainFolder) ? 0 : statusNotTransferred;
  runScheduledOnce(host, mainFolder, line.stationRole, line.now);
  return 0;
}

}  // namespace tellaxis
