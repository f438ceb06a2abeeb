// Printer choice: the slip printer by its name.
#pragma once

#include <string_view>

#include "platform/printers.h"

namespace tellaxis {

/// Makes the first installed printer of exactly this name the current one; where there is none, the current printer
/// stays. Throws `StepFailed` when the printers cannot be listed or the printer cannot be chosen.
void selectPrinterNamed(platform::PrinterObject& printer, std::string_view deviceName);

}  // namespace tellaxis
