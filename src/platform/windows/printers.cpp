// Printers: the printer object of a Windows computer, from the devices file and the installed printers.
#include "platform/windows/printers.h"

#include <string_view>
#include <utility>
#include <vector>

#include "platform/printing/escpos_printer.h"
#include "platform/printing/folder_printer.h"
#include "platform/printing/streaming_printer.h"
#include "platform/windows/printing/escpos_device.h"
#include "platform/windows/printing/installed_printers.h"
#include "platform/windows/printing/pictures.h"

namespace tellaxis::platform {

namespace {

/// Makes the back end of one printer of the devices file; null for a target that Windows does not have.
struct BackEndMaker {
  const InstalledPrinter& printer;
  const std::string& mainFolder;
  PageMakerOpener openPages;
  Trace& trace;

  using BackEnd = std::unique_ptr<PrinterBackEnd>;

  BitmapReader bitmapReader() const {
    return [&log = trace](std::string_view file) { return readPixels(file, log); };
  }
  BackEnd escPos(std::unique_ptr<ByteChannel> channel) const {
    return std::make_unique<EscPosPrinter>(printer.DeviceName, bitmapReader(), std::move(channel), trace);
  }
  BackEnd operator()(const FolderTarget& target) const {
    std::optional<PageMaker> pages;
    if (openPages != nullptr) pages = openPages(printer.DeviceName, bitmapReader(), trace);
    return std::make_unique<FolderPrinter>(underMainFolder(target.folder, mainFolder), std::move(pages), trace);
  }
  BackEnd operator()(const EscPosDeviceTarget& target) const {
    const std::string path = isPortName(target.device) ? target.device : underMainFolder(target.device, mainFolder);
    return escPos(openDeviceChannel(path, trace, target.line));
  }
  BackEnd operator()(const EscPosNetworkTarget& target) const {
    return escPos(openNetworkChannel(target.host, target.port, trace));
  }
  BackEnd operator()(const QueueTarget&) const { return nullptr; }
  BackEnd operator()(const EscPosQueueTarget&) const { return nullptr; }
};

}  // namespace

std::variant<std::unique_ptr<PrinterObject>, DevicesFileError> openPrinters(const DevicesFile& devices,
                                                                            const std::string& mainFolder,
                                                                            PageMakerOpener openPages, Trace& trace) {
  std::vector<ListedPrinter> listed;
  for (const PrinterDefinition& definition : devices.printers) {
    auto backEnd = std::visit(BackEndMaker{definition.printer, mainFolder, openPages, trace}, definition.target);
    if (!backEnd) return devicesFileError(definition.place, "le code CUPS non esistono su Windows");
    listed.push_back({definition.printer, std::move(backEnd)});
  }
  const auto picture = [&trace](std::string_view path) { return readPicture(path, trace); };
  return std::make_unique<StreamingPrinter>(std::move(listed), std::make_unique<InstalledPrinters>(trace), picture,
                                            trace);
}

}  // namespace tellaxis::platform
