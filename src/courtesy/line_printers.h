// Line printers: courtesy receipts in one fixed font on a Windows printer.
#pragma once

#include <string_view>

#include "core/bridge.h"
#include "platform/printers.h"

namespace tellaxis {

/// Prints every line of the job without its "§D" marks, ends the document and deletes the job file. Without a printer
/// on the configured port it prints on the current one.
void Cort_StampaOlivetti(Bridge& bridge, std::string_view jobFile);

/// Prints the rest of each line that begins with "N:SCO:TXT:", then blank lines, ends the document and deletes the job
/// file. Without a printer on the configured port it prints on the current one.
void Cort_StampaUnipos(Bridge& bridge, std::string_view jobFile);

/// The printer that both print on.
platform::PrinterSearch findLinePrinter(Bridge& bridge);

}  // namespace tellaxis
