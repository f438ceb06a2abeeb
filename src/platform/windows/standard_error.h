// Standard error: one line at a time for the person at the console.
#pragma once

#include <string_view>

namespace tellaxis::platform::windows {

/// Writes a text of code page 1252 as one line, in one piece: to a console in its own characters, to a file or pipe in
/// UTF-8. Ends of lines inside become a blank, other control characters a question mark.
void writeErrorLine(std::string_view text);

}  // namespace tellaxis::platform::windows
