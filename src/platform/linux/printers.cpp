// Printers: the printer object of a Linux computer, from the devices file and the CUPS queues.
#include "platform/linux/printers.h"

#include <utility>

#include "platform/linux/printing/cups_printer.h"
#include "platform/linux/printing/escpos_device.h"
#include "platform/linux/printing/loaded_pages.h"
#include "platform/printing/escpos_printer.h"
#include "platform/printing/folder_printer.h"
#include "platform/printing/streaming_printer.h"

namespace tellaxis::platform {

namespace {

/// Four metres of paper each; nobody looks at more of them, and the text has the rest.
constexpr int mostFolderPages = 100;

std::optional<Bitmap> loadBitmap(std::string_view file, const PathResolver& resolve, Trace& trace) {
  const PageLibrary* library = pageLibrary(trace);
  if (library == nullptr) return std::nullopt;
  const auto path = resolve(file);
  auto read = path ? library->readBitmap(*path) : BitmapError{"percorso non valido"};
  if (auto* bitmap = std::get_if<Bitmap>(&read)) return std::move(*bitmap);
  trace.failed("LoadPicture", file, std::get<BitmapError>(read).reason);
  return std::nullopt;
}

/// Makes the back end of one printer of the devices file.
struct BackEndMaker {
  const InstalledPrinter& printer;
  const std::string& mainFolder;
  const BitmapReader& readBitmap;
  const std::shared_ptr<CupsServer>& server;
  Trace& trace;

  using BackEnd = std::unique_ptr<PrinterBackEnd>;

  BackEnd escPos(std::unique_ptr<ByteChannel> channel) const {
    return std::make_unique<EscPosPrinter>(printer.DeviceName, readBitmap, std::move(channel), trace);
  }
  BackEnd operator()(const FolderTarget& target) const {
    const auto open = [name = printer.DeviceName, read = readBitmap,
                       &log = trace](const std::string& base) -> std::unique_ptr<DocumentSink> {
      const PageLibrary* library = pageLibrary(log);
      return library == nullptr ? nullptr
                                : library->open({base + ".pdf", base + ".png", mostFolderPages}, name, read, log);
    };
    return std::make_unique<FolderPrinter>(underMainFolder(target.folder, mainFolder),
                                           PageMaker{{".pdf", ".png"}, open}, trace);
  }
  BackEnd operator()(const QueueTarget& target) const {
    return openCupsPrinter(server, target.queue, printer.DeviceName, readBitmap, trace);
  }
  BackEnd operator()(const EscPosDeviceTarget& target) const {
    return escPos(openDeviceChannel(underMainFolder(target.device, mainFolder), trace, printerTimeout, target.line));
  }
  BackEnd operator()(const EscPosNetworkTarget& target) const {
    return escPos(openNetworkChannel(target.host, target.port, trace));
  }
  BackEnd operator()(const EscPosQueueTarget& target) const { return escPos(openCupsChannel(server, target.queue)); }
};

}  // namespace

std::unique_ptr<PrinterObject> openPrinters(const DevicesFile& devices, const std::string& mainFolder,
                                            PathResolver resolve, Trace& trace) {
  const BitmapReader readBitmap = [resolve = std::move(resolve), &trace](std::string_view file) {
    return loadBitmap(file, resolve, trace);
  };
  const PictureReader readPicture = [readBitmap](std::string_view file) -> std::optional<Picture> {
    const auto bitmap = readBitmap(file);
    if (!bitmap) return std::nullopt;
    return Picture{std::string(file), bitmap->width, bitmap->height};
  };
  const auto server = std::make_shared<CupsServer>(trace);
  std::vector<ListedPrinter> listed;
  for (const PrinterDefinition& definition : devices.printers)
    listed.push_back(
        {definition.printer,
         std::visit(BackEndMaker{definition.printer, mainFolder, readBitmap, server, trace}, definition.target)});
  auto queues = std::make_unique<CupsPrinters>(server, devices.serialLines, readBitmap, trace);
  return std::make_unique<StreamingPrinter>(std::move(listed), std::move(queues), readPicture, trace);
}

}  // namespace tellaxis::platform
