// Printers: the printer object of a Linux computer, from the devices file and the CUPS queues.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/devices_file.h"
#include "platform/printers.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// The native path that a path of the program names; nothing for one that cannot be.
using PathResolver = std::function<std::optional<std::string>(std::string_view path)>;

/// Opens no printer and loads nothing yet. `mainFolder` is native.
std::unique_ptr<PrinterObject> openPrinters(const DevicesFile& devices, const std::string& mainFolder,
                                            PathResolver resolve, Trace& trace);

}  // namespace tellaxis::platform
