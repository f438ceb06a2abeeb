// Printers: the printer object of a Windows computer, from the devices file and the installed printers.
#pragma once

#include <memory>
#include <string>
#include <variant>

#include "platform/devices_file.h"
#include "platform/printers.h"
#include "platform/printing/page_maker.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Opens no printer yet. A target that does not exist on Windows is an error that names its place. `openPages` draws
/// the documents of folder printers; null: they have no pages.
std::variant<std::unique_ptr<PrinterObject>, DevicesFileError> openPrinters(const DevicesFile& devices,
                                                                            const std::string& mainFolder,
                                                                            PageMakerOpener openPages, Trace& trace);

}  // namespace tellaxis::platform
