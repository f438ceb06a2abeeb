// Courtesy job: where a courtesy job arrives.
#pragma once

#include <string_view>

#include "core/bridge.h"

namespace tellaxis {

/// Prints a courtesy job (full path) as the chosen printer type prints it. A type that is not on the list, compared
/// exactly, prints nothing.
void Cort_StampaFile(Bridge& bridge, std::string_view jobFile);

}  // namespace tellaxis
