// Stale files: unfinished files that a program left behind when it was ended in the midst of writing.
#pragma once

#include <windows.h>

#include <chrono>
#include <string>

namespace tellaxis::platform {

/// A file may still be waited for by somebody who has just learnt its name.
inline constexpr std::chrono::minutes staleAge{10};

/// Removes from a folder, given with its ending separator, the temporary files of processes that run no more which have
/// not changed for `age`. Failures are of no consequence: the next look comes.
void removeStaleFiles(const std::wstring& folder, std::chrono::seconds age = staleAge);

}  // namespace tellaxis::platform
