// Error line: a text as one line on standard error.
#pragma once

#include <string>
#include <string_view>

namespace tellaxis::platform {

/// The text as one line: ends of lines inside become a blank, other control characters a question mark.
std::string oneLineOf(std::string_view text);

/// Writes a text of code page 1252 as one line, in one piece.
void writeErrorLine(std::string_view text);

}  // namespace tellaxis::platform
