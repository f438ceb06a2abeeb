// Samsung: courtesy receipts with markup, printed with the device fonts of the printer's driver.
#pragma once

#include <string_view>

#include "core/bridge.h"
#include "platform/printers.h"

namespace tellaxis {

/// Prints a job whose lines are fields separated by "#" on the printer of the configured serial port: the logo as a
/// document of its own where it is enabled, then line by line. The model class "500" leaves the job file, the others
/// delete it. Without such a printer a message is shown and the file stays.
void Cort_StampaSamsung(Bridge& bridge, std::string_view jobFile);

/// The printer that it prints on.
platform::PrinterSearch findSamsung(Bridge& bridge);

}  // namespace tellaxis
