// Prompt: jobs taken when their writer has finished, where that is switched on.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "core/bridge.h"

namespace tellaxis {

/// False for a file that was written a moment ago and may go on being written; always true where notices are off.
bool isWhole(const Bridge& bridge, std::string_view path);

/// Has the places watched where jobs and a driver's answers are written now, as the settings say. `watched` is what was
/// watched before.
void watchJobs(const Bridge& bridge, std::vector<std::string>& watched);

/// Waits until the file `path` is there and whole, `duration` at most.
void waitForFile(const Bridge& bridge, std::string_view path, std::chrono::milliseconds duration);

}  // namespace tellaxis
