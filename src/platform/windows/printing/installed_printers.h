// Printers of Windows: the installed ones, and documents printed on them by GDI.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/printers.h"
#include "platform/printing/document.h"
#include "platform/printing/streaming_printer.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// The printers in the order in which the system enumerates them.
class InstalledPrinters : public SystemPrinters {
 public:
  explicit InstalledPrinters(Trace& trace) : trace_(trace) {}

  std::optional<SystemPrinterList> list() override;
  std::unique_ptr<PrinterBackEnd> backEnd(const InstalledPrinter& printer) override;

 private:
  Trace& trace_;
};

/// What the spooler knows of the local printer of this name; `unknown` for a connection, whose server may be switched
/// off.
PrinterState stateOfLocalPrinter(std::string_view deviceName);

/// What the spooler's bits (PRINTER_STATUS_..., PRINTER_ATTRIBUTE_...) say.
PrinterState stateOfSpooler(std::uint32_t status, std::uint32_t attributes);

}  // namespace tellaxis::platform
