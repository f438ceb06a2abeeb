// Error line: a text as one line on standard error.
#pragma once

#include <string_view>

namespace tellaxis::platform {

/// Writes a text of code page 1252 as one line, in one piece. Ends of lines inside become a blank, other control
/// characters a question mark.
void writeErrorLine(std::string_view text);

}  // namespace tellaxis::platform
