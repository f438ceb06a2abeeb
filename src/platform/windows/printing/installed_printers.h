// Printers of Windows: the installed ones, and documents printed on them by GDI.
#pragma once

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

}  // namespace tellaxis::platform
