// Error line: no character of a text reaches the terminal as a command.
#include "platform/console/error_line.h"

#include <string>

#include "platform/standard_error.h"

namespace tellaxis::platform {

std::string oneLineOf(std::string_view text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (text.substr(i, 2) == "\r\n") continue;
    const bool blank = c == '\r' || c == '\n' || c == '\t';
    const bool control = (c >= 0 && c < ' ') || c == '\x7F';
    line += blank ? ' ' : control ? '?' : c;
  }
  return line;
}

void writeErrorLine(std::string_view text) { writeStandardError(oneLineOf(text)); }

}  // namespace tellaxis::platform
