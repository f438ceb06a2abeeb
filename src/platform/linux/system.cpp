// System: the services of a Linux computer, put together.
#include "platform/system.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <map>
#include <utility>

#include "platform/console/dialogs.h"
#include "platform/console/trace.h"
#include "platform/console/tray.h"
#include "platform/devices_file.h"
#include "platform/linux/clock.h"
#include "platform/linux/files.h"
#include "platform/linux/files/paths.h"
#include "platform/linux/ftp_client.h"
#include "platform/linux/inspection.h"
#include "platform/linux/job_notices.h"
#include "platform/linux/kernel/descriptor.h"
#include "platform/linux/locale.h"
#include "platform/linux/printers.h"
#include "platform/linux/processes.h"
#include "platform/linux/profiles.h"
#include "platform/linux/serial_port.h"

namespace tellaxis::platform {

namespace {

std::map<int, std::string> serialDevices(const DevicesFile& devices, const std::string& mainFolder) {
  std::map<int, std::string> paths;
  for (const SerialDefinition& line : devices.serialLines) paths[line.port] = underMainFolder(line.device, mainFolder);
  return paths;
}

class LinuxSystem : public System {
 public:
  LinuxSystem(const SystemOptions& options, RegionalSettings regional, const DevicesFile& devices)
      : trace_(makeTrace(options.trace, options.alsoTold)),
        paths_(options.mainFolder, options.drives),
        locale_(std::move(regional)),
        profiles_([this](std::string_view path) { return paths_.resolve(path).value_or(std::string()); }, *trace_),
        files_(paths_, *trace_),
        processes_(paths_, *trace_),
        serialPorts_(serialDevices(devices, options.mainFolder), *trace_),
        printer_(openPrinters(
            devices, options.mainFolder, [this](std::string_view path) { return paths_.resolve(path); }, *trace_)),
        tray_(*trace_),
        ftpClients_(paths_, *trace_),
        options_(devices.options) {}

  Host& host() override { return host_; }
  const BridgeOptions& options() const override { return options_; }
  std::unique_ptr<JobNotices> openJobNotices(std::function<void()> whole) override {
    return std::make_unique<LinuxJobNotices>([this](std::string_view path) { return paths_.resolve(path); },
                                             std::move(whole), *trace_);
  }

  std::unique_ptr<Inspection> openInspection() override {
    return std::make_unique<LinuxInspection>(paths_, serialPorts_);
  }

 private:
  std::unique_ptr<Trace> trace_;
  Paths paths_;
  LinuxLocale locale_;
  LinuxClock clock_;
  LinuxProfiles profiles_;
  LinuxFiles files_;
  LinuxProcesses processes_;
  LinuxSerialPorts serialPorts_;
  std::unique_ptr<PrinterObject> printer_;
  ConsoleDialogs dialogs_;
  NoTray tray_;
  LinuxFtpClients ftpClients_;
  BridgeOptions options_;
  Host host_{.profiles = profiles_,
             .files = files_,
             .clock = clock_,
             .processes = processes_,
             .serialPorts = serialPorts_,
             .Printer = *printer_,
             .dialogs = dialogs_,
             .tray = tray_,
             .ftpClients = ftpClients_,
             .locale = locale_,
             .trace = *trace_};
};

/// The same devices where nothing is printed but into a folder.
DevicesFile withoutPaper(const DevicesFile& devices, const SystemOptions& options) {
  const auto trace = makeTrace(false, options.alsoTold);
  const auto nowhere = [](std::string_view) { return std::optional<std::string>(); };
  const auto printers = openPrinters(devices, options.mainFolder, nowhere, *trace)->Printers();
  return printingInto(devices, printers.value_or(std::vector<InstalledPrinter>()), options.printInto);
}

/// What the bridge has open at once with all its devices and a job under way, with something to spare.
constexpr int descriptorsOfBridge = 64;

/// With fewer the settings could not be read, and a bridge without settings would seem to serve.
bool mayOpenEnough() {
  const Descriptor highest(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, descriptorsOfBridge - 1));
  return highest || errno == EBADF;
}

}  // namespace

std::variant<std::unique_ptr<System>, SystemError> openSystem(const SystemOptions& options) {
  const auto regional = options.localeName ? settingsOfLocale(*options.localeName) : settingsOfEnvironment();
  if (!regional) return SystemError{"--locale " + *options.localeName + ": impostazioni internazionali sconosciute"};
  if (!mayOpenEnough()) return SystemError{"il sistema concede troppo pochi file aperti (ulimit -n)"};
  const auto file = devicesFileOf(options.devicesFile, options.mainFolder);
  const auto devices = file ? readDevicesFile(*file) : DevicesFile{};
  if (const auto* error = std::get_if<DevicesFileError>(&devices)) return SystemError{error->message};
  // A pipe whose reader has gone is a failing step, not the program's end.
  ::signal(SIGPIPE, SIG_IGN);
  const auto& read = std::get<DevicesFile>(devices);
  return std::make_unique<LinuxSystem>(options, *regional,
                                       options.printInto.empty() ? read : withoutPaper(read, options));
}

}  // namespace tellaxis::platform
