// Standard error: one line at a time for the person at the terminal.
#pragma once

#include <string_view>

namespace tellaxis::platform {

/// Writes a text of code page 1252 as one line of UTF-8, in one piece. Ends of lines inside become a blank, other
/// control characters a question mark.
void writeErrorLine(std::string_view text);

}  // namespace tellaxis::platform
