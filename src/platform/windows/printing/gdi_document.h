// GDI document: statements drawn on a printer's device context, with the driver's device fonts.
#pragma once

#include <memory>
#include <string_view>

#include "platform/printing/document.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// What prints on the printer called `name`, page by page, with the fonts of its own driver.
std::unique_ptr<PrinterBackEnd> gdiBackEnd(std::string_view name, Trace& trace);

}  // namespace tellaxis::platform
