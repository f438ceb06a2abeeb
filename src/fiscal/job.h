// Fiscal job: hands one fiscal job to the fiscal printer's driver software.
#pragma once

#include <string_view>

#include "core/bridge.h"

namespace tellaxis {

/// Hands over the job file in the way of the configured driver kind; another kind does nothing. The job file itself is
/// left for the caller to delete; how it ended is left in `bridge.fiscalOutcome`. Blocks until the driver has answered
/// or was given up.
void MF_Invia(Bridge& bridge, std::string_view jobFile);

}  // namespace tellaxis
