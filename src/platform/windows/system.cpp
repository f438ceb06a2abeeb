// System: the services of a Windows computer, put together.
#include "platform/system.h"

#include <utility>

#include "platform/virtual/devices_file.h"
#include "platform/virtual/escpos.h"
#include "platform/virtual/folder_printer.h"
#include "platform/virtual/listened_trace.h"
#include "platform/virtual/recording_printer.h"
#include "platform/windows/clock.h"
#include "platform/windows/dialogs.h"
#include "platform/windows/escpos_device.h"
#include "platform/windows/files.h"
#include "platform/windows/ftp_client.h"
#include "platform/windows/locale.h"
#include "platform/windows/native.h"
#include "platform/windows/pictures.h"
#include "platform/windows/printers.h"
#include "platform/windows/processes.h"
#include "platform/windows/profiles.h"
#include "platform/windows/serial_port.h"
#include "platform/windows/trace.h"
#include "platform/windows/tray.h"

namespace tellaxis::platform {

namespace {

using namespace windows;

std::unique_ptr<Trace> makeTrace(const SystemOptions& options) {
  std::unique_ptr<Trace> trace = std::make_unique<ErrorTrace>(options.trace);
  if (options.alsoTold != nullptr) trace = std::make_unique<ListenedTrace>(std::move(trace), *options.alsoTold);
  return trace;
}

/// Makes the back end of one printer of the devices file; null for a target that Windows does not have.
struct BackEndMaker {
  const InstalledPrinter& printer;
  const std::string& mainFolder;
  Trace& trace;

  using BackEnd = std::unique_ptr<PrinterBackEnd>;

  BackEnd escPos(std::unique_ptr<ByteChannel> channel) const {
    const BitmapReader readBitmap = [&log = trace](std::string_view file) { return readPixels(file, log); };
    return std::make_unique<EscPosPrinter>(printer.DeviceName, readBitmap, std::move(channel), trace);
  }
  BackEnd operator()(const FolderTarget& target) const {
    return std::make_unique<FolderPrinter>(underMainFolder(target.folder, mainFolder), nullptr, trace);
  }
  BackEnd operator()(const EscPosDeviceTarget& target) const {
    const std::string path = isPortName(target.device) ? target.device : underMainFolder(target.device, mainFolder);
    return escPos(openDeviceChannel(path, trace));
  }
  BackEnd operator()(const EscPosNetworkTarget& target) const {
    return escPos(openNetworkChannel(target.host, target.port, trace));
  }
  BackEnd operator()(const QueueTarget&) const { return nullptr; }
  BackEnd operator()(const EscPosQueueTarget&) const { return nullptr; }
};

class WindowsSystem : public System {
 public:
  WindowsSystem(const SystemOptions& options, windows::Locale locale)
      : trace_(makeTrace(options)), locale_(std::move(locale)) {}

  /// Makes the printer object over the printers of the devices file and the installed ones.
  std::optional<DevicesFileError> openPrinters(const SystemOptions& options);

  Host& host() override { return *host_; }

 private:
  std::variant<std::vector<ListedPrinter>, DevicesFileError> listedPrinters(const std::string& file,
                                                                            const std::string& mainFolder);

  std::unique_ptr<Trace> trace_;
  windows::Profiles profiles_{*trace_};
  windows::Files files_{*trace_};
  windows::Clock clock_;
  windows::Processes processes_{*trace_};
  windows::SerialPorts serialPorts_{*trace_};
  std::optional<RecordingPrinter> printer_;
  ConsoleDialogs dialogs_;
  windows::Tray tray_{*trace_};
  windows::FtpClients ftpClients_{*trace_};
  windows::Locale locale_;
  std::optional<Host> host_;
};

std::optional<std::string> devicesFileOf(const SystemOptions& options) {
  if (options.devicesFile) return options.devicesFile;
  std::string usual = options.mainFolder + "\\devices.toml";
  const DWORD attributes = GetFileAttributesW(wideFromUtf8(usual).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return std::nullopt;
  return usual;
}

std::variant<std::vector<ListedPrinter>, DevicesFileError> WindowsSystem::listedPrinters(
    const std::string& file, const std::string& mainFolder) {
  auto read = readDevicesFile(file);
  if (auto* error = std::get_if<DevicesFileError>(&read)) return std::move(*error);
  std::vector<ListedPrinter> printers;
  for (const PrinterDefinition& definition : std::get<DevicesFile>(read).printers) {
    auto backEnd = std::visit(BackEndMaker{definition.printer, mainFolder, *trace_}, definition.target);
    if (!backEnd) return devicesFileError(file, definition.position, "le code CUPS non esistono su Windows");
    printers.push_back({definition.printer, std::move(backEnd)});
  }
  return printers;
}

std::optional<DevicesFileError> WindowsSystem::openPrinters(const SystemOptions& options) {
  std::vector<ListedPrinter> listed;
  if (const auto file = devicesFileOf(options)) {
    auto read = listedPrinters(*file, options.mainFolder);
    if (auto* error = std::get_if<DevicesFileError>(&read)) return std::move(*error);
    listed = std::move(std::get<std::vector<ListedPrinter>>(read));
  }
  const auto picture = [this](std::string_view file) { return readPicture(file, *trace_); };
  printer_.emplace(std::move(listed), std::make_unique<InstalledPrinters>(*trace_), picture, *trace_);
  host_.emplace(Host{.profiles = profiles_,
                     .files = files_,
                     .clock = clock_,
                     .processes = processes_,
                     .serialPorts = serialPorts_,
                     .Printer = *printer_,
                     .dialogs = dialogs_,
                     .tray = tray_,
                     .ftpClients = ftpClients_,
                     .locale = locale_,
                     .trace = *trace_});
  return std::nullopt;
}

/// "C" and "POSIX" are no region: there the program is Italian.
std::optional<windows::Locale> localeFor(const std::optional<std::string>& name) {
  if (!name) return windows::Locale();
  const auto region = regionCalled(*name == "C" || *name == "POSIX" ? "it_IT" : *name);
  if (!region) return std::nullopt;
  return windows::Locale(*region);
}

}  // namespace

std::variant<std::unique_ptr<System>, SystemError> openSystem(const SystemOptions& options) {
  auto locale = localeFor(options.localeName);
  if (!locale) return SystemError{"--locale " + *options.localeName + ": impostazioni internazionali sconosciute"};
  auto system = std::make_unique<WindowsSystem>(options, std::move(*locale));
  if (auto error = system->openPrinters(options)) return SystemError{std::move(error->message)};
  return system;
}

}  // namespace tellaxis::platform
