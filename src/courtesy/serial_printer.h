// Serial printer: courtesy receipts on the serial line of `COMPreconto`.
#pragma once

#include <string_view>

#include "core/bridge.h"

namespace tellaxis {

/// Sends what follows the first ":" of each line that begins with "N2", then blank lines and the paper cut, and deletes
/// the job file.
void Cort_StampaDPT282(Bridge& bridge, std::string_view jobFile);

/// The main form's test print: a fixed text, blank lines and the paper cut.
void Command1_Click(Bridge& bridge);

}  // namespace tellaxis
