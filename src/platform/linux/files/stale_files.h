// Stale files: unfinished files that a program left behind when it was ended in the midst of writing.
#pragma once

#include <chrono>
#include <string>

namespace tellaxis::platform {

/// Nobody writes on a file that has not changed for so long; on a folder of the network the process that does may be
/// another computer's.
inline constexpr std::chrono::minutes staleAge{10};

/// Removes from the native folder the unfinished files (".tellaxis-" and a process's number) of processes that are no
/// more, unchanged for `age`. What cannot be removed stays.
void removeStaleFiles(const std::string& folder, std::chrono::seconds age = staleAge);

}  // namespace tellaxis::platform
