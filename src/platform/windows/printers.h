// Printers: the printer object of a Windows computer, from the devices file and the installed printers.
#pragma once

#include <memory>
#include <string>
#include <variant>

#include "platform/devices_file.h"
#include "platform/printers.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Opens no printer yet. `file` is where `devices` was read from, to be named where a target does not exist on Windows.
std::variant<std::unique_ptr<PrinterObject>, DevicesFileError> openPrinters(const DevicesFile& devices,
                                                                            const std::string& file,
                                                                            const std::string& mainFolder,
                                                                            Trace& trace);

}  // namespace tellaxis::platform
