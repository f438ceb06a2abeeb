// Printer choice: the slip printer by its name, and what becomes of a document that fails on it.
#pragma once

#include <string_view>

#include "platform/printers.h"

namespace tellaxis {

/// Makes the first installed printer of exactly this name the current one; where there is none, the current printer
/// stays. Throws `StepFailed` when the printers cannot be listed or the printer cannot be chosen.
void selectPrinterNamed(platform::PrinterObject& printer, std::string_view deviceName);

/// Calls `print`; where it leaves by a failure, nothing of the document that was open then is printed.
template <class Print>
void abandoningOnFailure(platform::PrinterObject& printer, Print print) {
  try {
    print();
  } catch (...) {
    printer.abandon();
    throw;
  }
}

}  // namespace tellaxis
