// Courtesy job: where a courtesy job arrives.
#pragma once

#include <optional>
#include <string_view>

#include "core/bridge.h"
#include "platform/printers.h"

namespace tellaxis {

/// Prints a courtesy job (full path) as the chosen printer type prints it. A type that is not on the list, compared
/// exactly, prints nothing.
void Cort_StampaFile(Bridge& bridge, std::string_view jobFile);

/// The printer that the next job would be printed on; nothing where that is none of the installed ones.
std::optional<platform::InstalledPrinter> courtesyPrinter(Bridge& bridge);

}  // namespace tellaxis
