// GDI document: statements drawn on a printer's device context, with the driver's device fonts.
#pragma once

#include <memory>

#include "platform/printers.h"
#include "platform/printing/document.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// What prints on `printer`, page by page, with the fonts of its own driver. A printer whose port asks for a file's
/// name is refused: the dialog would keep every device waiting.
std::unique_ptr<PrinterBackEnd> gdiBackEnd(const InstalledPrinter& printer, Trace& trace);

}  // namespace tellaxis::platform
