// Standard error: where the person at the terminal reads.
#pragma once

#include <string_view>

namespace tellaxis::platform {

/// Writes one line of code page 1252 and its end in one piece: to a console in its own characters, to anything else in
/// UTF-8.
void writeStandardError(std::string_view line);

}  // namespace tellaxis::platform
