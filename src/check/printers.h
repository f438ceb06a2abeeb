// Printers: those that there are, as a finding about a missing one tells them.
#pragma once

#include <string>

#include "check/scene.h"

namespace tellaxis {

/// Whether printing goes on, on the printer that is current, where the one that is meant is missing.
enum class WithoutPrinter : std::uint8_t { printsOnCurrent, printsNothing };

/// Says `printer-missing`: `missing` is the sentence without its end, then comes where it would be printed instead, and
/// what printers there are.
void addMissingPrinter(const CheckScene& scene, Findings& findings, const std::string& missing, WithoutPrinter without);

/// Says `printer-not-ready` where the printer of this name, asked now, says that it cannot print.
void checkPrinterState(const CheckScene& scene, Findings& findings, const std::string& deviceName);

}  // namespace tellaxis
