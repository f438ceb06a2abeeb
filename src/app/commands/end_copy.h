// End copy: asking the copy that serves a main folder to end, and waiting until it has.
#pragma once

#include <string>

namespace tellaxis {

/// How long a job in hand may take to end, in seconds; fiscal jobs wait for their drivers.
inline constexpr int longestEnd = 120;

/// Returns 0 when the copy has ended, `statusNoCopy` when there was none, `statusNotEnded` when it has not ended in
/// time or may not be asked. `mainFolder` is native, in UTF-8.
int endOtherCopy(const std::string& mainFolder);

}  // namespace tellaxis
