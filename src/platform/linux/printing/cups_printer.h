// CUPS printer: the computer's queues as installed printers, and jobs to them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/devices_file.h"
#include "platform/linux/printing/cups_server.h"
#include "platform/printing/escpos_printer.h"
#include "platform/printing/streaming_printer.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// The queues of the CUPS server. A queue on a serial or parallel line has the port name that such a line has
/// ("COM3:", "LPT1:"), any other the address of its device.
class CupsPrinters final : public SystemPrinters {
 public:
  CupsPrinters(std::shared_ptr<CupsServer> server, std::vector<SerialDefinition> serialLines, BitmapReader readBitmap,
               Trace& trace);

  std::optional<SystemPrinterList> list() override;
  std::unique_ptr<PrinterBackEnd> backEnd(const InstalledPrinter& printer) override;

 private:
  std::shared_ptr<CupsServer> server_;
  std::vector<SerialDefinition> serialLines_;
  BitmapReader readBitmap_;
  Trace& trace_;
};

/// Each document becomes one PDF job of `queue` (UTF-8), drawn as for the printer `deviceName`.
std::unique_ptr<PrinterBackEnd> openCupsPrinter(std::shared_ptr<CupsServer> server, std::string queue,
                                                std::string deviceName, BitmapReader readBitmap, Trace& trace);

/// Documents as raw jobs of `queue`.
std::unique_ptr<ByteChannel> openCupsChannel(std::shared_ptr<CupsServer> server, std::string queue);

/// The port of a queue whose device has the address `uri`.
std::string portOfQueue(const std::string& uri, const std::vector<SerialDefinition>& serialLines);

}  // namespace tellaxis::platform
