// Printers of Windows: the installed ones, and documents printed on them by GDI.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/printers.h"
#include "platform/trace.h"
#include "platform/virtual/document.h"
#include "platform/virtual/recording_printer.h"

namespace tellaxis::platform::windows {

/// The system's default printer comes first, the others in the system's order.
class InstalledPrinters : public SystemPrinters {
 public:
  explicit InstalledPrinters(Trace& trace) : trace_(trace) {}

  std::optional<std::vector<InstalledPrinter>> list() override;
  std::unique_ptr<PrinterBackEnd> backEnd(const InstalledPrinter& printer) override;

 private:
  Trace& trace_;
};

/// What prints on the printer called `name`, page by page, with the fonts of its own driver.
std::unique_ptr<PrinterBackEnd> gdiBackEnd(std::string_view name, Trace& trace);

}  // namespace tellaxis::platform::windows
