// Printers of Windows: the installed ones, and documents printed on them by GDI.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/printers.h"
#include "platform/printing/document.h"
#include "platform/printing/streaming_printer.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// The system's default printer comes first, the others in the system's order.
class InstalledPrinters : public SystemPrinters {
 public:
  explicit InstalledPrinters(Trace& trace) : trace_(trace) {}

  std::optional<std::vector<InstalledPrinter>> list() override;
  std::unique_ptr<PrinterBackEnd> backEnd(const InstalledPrinter& printer) override;

 private:
  Trace& trace_;
};

}  // namespace tellaxis::platform
