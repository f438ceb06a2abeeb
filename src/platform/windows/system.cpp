// System: the services of a Windows computer, put together.
#include "platform/system.h"

#include <windows.h>

#include <memory>
#include <utility>

#include "platform/console/dialogs.h"
#include "platform/console/trace.h"
#include "platform/devices_file.h"
#include "platform/standard_error.h"
#include "platform/windows/clock.h"
#include "platform/windows/files.h"
#include "platform/windows/ftp_client.h"
#include "platform/windows/inspection.h"
#include "platform/windows/job_notices.h"
#include "platform/windows/locale.h"
#include "platform/windows/printers.h"
#include "platform/windows/processes.h"
#include "platform/windows/profiles.h"
#include "platform/windows/serial_port.h"
#include "platform/windows/tray.h"

namespace tellaxis::platform {

namespace {

class WindowsSystem : public System {
 public:
  WindowsSystem(std::unique_ptr<Trace> trace, WindowsLocale locale, std::unique_ptr<PrinterObject> printer,
                BridgeOptions options)
      : trace_(std::move(trace)),
        printer_(std::move(printer)),
        locale_(std::move(locale)),
        options_(std::move(options)) {}

  Host& host() override { return host_; }
  const BridgeOptions& options() const override { return options_; }
  std::unique_ptr<JobNotices> openJobNotices(std::function<void()> whole) override {
    return std::make_unique<WindowsJobNotices>(std::move(whole), *trace_);
  }

  std::unique_ptr<Inspection> openInspection() override { return std::make_unique<WindowsInspection>(); }

 private:
  std::unique_ptr<Trace> trace_;
  WindowsProfiles profiles_{*trace_};
  WindowsFiles files_{*trace_};
  WindowsClock clock_;
  WindowsProcesses processes_{*trace_};
  WindowsSerialPorts serialPorts_{*trace_};
  std::unique_ptr<PrinterObject> printer_;
  ConsoleDialogs dialogs_;
  WindowsTray tray_{*trace_};
  WindowsFtpClients ftpClients_{*trace_};
  WindowsLocale locale_;
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

constexpr UINT westernCodePage = 1252;
/// The settings file is read by the system in its own code page.
constexpr const char* otherCodePage =
    "il computer non usa la 1252: le lettere accentate delle impostazioni saranno altre";

/// "C" and "POSIX" are no region: there the program is Italian.
std::optional<WindowsLocale> localeFor(const std::optional<std::string>& name) {
  if (!name) return WindowsLocale();
  const auto region = regionCalled(*name == "C" || *name == "POSIX" ? "it_IT" : *name);
  if (!region) return std::nullopt;
  return WindowsLocale(*region);
}

}  // namespace

std::variant<std::unique_ptr<System>, SystemError> openSystem(const SystemOptions& options) {
  auto locale = localeFor(options.localeName);
  if (!locale) return SystemError{"--locale " + *options.localeName + ": impostazioni internazionali sconosciute"};
  const auto file = devicesFileOf(options.devicesFile, options.mainFolder);
  const auto devices = file ? readDevicesFile(*file) : DevicesFile{};
  if (const auto* error = std::get_if<DevicesFileError>(&devices)) return SystemError{error->message};
  auto trace = makeTrace(options.trace, options.alsoTold);
  if (const UINT codePage = GetACP(); codePage != westernCodePage) {
    trace->failed("tabella dei caratteri", std::to_string(codePage), otherCodePage);
    writeStandardError("Tellaxis: tabella dei caratteri " + std::to_string(codePage) + ": " + otherCodePage);
  }
  auto printer = openPrinters(std::get<DevicesFile>(devices), options.mainFolder, nullptr, *trace);
  if (const auto* error = std::get_if<DevicesFileError>(&printer)) return SystemError{error->message};
  if (!options.printInto.empty()) {
    const auto printers = std::get<std::unique_ptr<PrinterObject>>(printer)->Printers();
    const DevicesFile intoFolder = printingInto(std::get<DevicesFile>(devices),
                                                printers.value_or(std::vector<InstalledPrinter>()), options.printInto);
    printer = openPrinters(intoFolder, options.mainFolder, options.pagesInto, *trace);
  }
  return std::make_unique<WindowsSystem>(std::move(trace), std::move(*locale),
                                         std::move(std::get<std::unique_ptr<PrinterObject>>(printer)),
                                         std::get<DevicesFile>(devices).options);
}

}  // namespace tellaxis::platform
