// One-shot: single operations without the start-up.
#include "app/commands/one_shot.h"

#include <utility>
#include <variant>
#include <vector>

#include "app/commands/ports_command.h"
#include "app/commands/trial_command.h"
#include "connect/ftp.h"
#include "connect/schedule.h"
#include "core/bridge.h"
#include "core/settings.h"
#include "platform/devices_file.h"
#include "platform/instance.h"

namespace tellaxis {

namespace {

/// The computer's clock, whose calendar stands at a given minute.
class PretendedClock : public platform::Clock {
 public:
  PretendedClock(platform::Clock& clock, const std::optional<platform::DateTime>& now) : clock_(clock), now_(now) {}

  double secondsSinceMidnight() override { return clock_.secondsSinceMidnight(); }
  platform::DateTime now() override { return now_ ? *now_ : clock_.now(); }
  std::chrono::milliseconds sinceEpoch() override { return clock_.sinceEpoch(); }
  std::chrono::microseconds steady() override { return clock_.steady(); }
  void sleep(std::chrono::milliseconds duration) override { clock_.sleep(duration); }

 private:
  platform::Clock& clock_;
  const std::optional<platform::DateTime>& now_;
};

std::vector<platform::PrinterDefinition> listedPrinters(const platform::SystemOptions& options) {
  const auto file = platform::devicesFileOf(options.devicesFile, options.mainFolder);
  auto read = file ? platform::readDevicesFile(*file) : platform::DevicesFile{};
  auto* const devices = std::get_if<platform::DevicesFile>(&read);
  return devices != nullptr ? std::move(devices->printers) : std::vector<platform::PrinterDefinition>();
}

/// The commands for whoever sets the devices up or looks for what is wrong.
CommandResult lookAround(platform::System& system, const CommandLine& line, const std::string& mainFolder) {
  platform::Host& host = system.host();
  const auto serving = platform::servingProcess(line.system.mainFolder);
  if (line.command == Command::prova)
    return tryOnce(host, system.options(), mainFolder, line.tried, serving.has_value());
  const auto inspection = system.openInspection();
  if (line.command == Command::porte) return showPorts(host, *inspection, listedPrinters(line.system));
  return showCheck(host, *inspection, system.options(), mainFolder, serving, line.check);
}

}  // namespace

bool transferOnce(platform::Host& host, const std::string& mainFolder) {
  Bridge bridge(host);
  setMainFolder(bridge.settings, mainFolder);
  return EseguiFTP(bridge);
}

std::string stationRoleFrom(const std::string& asked, const platform::BridgeOptions& options) {
  if (!asked.empty()) return asked;
  return options.role.empty() ? "CLIENT" : options.role;
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

int runOnce(platform::System& system, const CommandLine& line, const std::string& mainFolder, const Say& say) {
  platform::Host& host = system.host();
  const auto said = [&say](const CommandResult& result) {
    say(result);
    return result.status;
  };
  if (line.command == Command::diario) return said(showDiary(host, system.options(), mainFolder, line.diary));
  if (line.command == Command::ristampa) {
    const bool running = platform::lockMainFolder(line.system.mainFolder) == nullptr;
    return said(reprintFromDiary(host, system.options(), mainFolder, line.diary, running));
  }
  if (line.command == Command::controlla || line.command == Command::prova || line.command == Command::porte)
    return said(lookAround(system, line, mainFolder));
  if (line.command == Command::ftp) return transferOnce(host, mainFolder) ? 0 : statusNotTransferred;
  runScheduledOnce(host, mainFolder, stationRoleFrom(line.stationRole, system.options()), line.now);
  return 0;
}

}  // namespace tellaxis
