// Log: writing dated lines.
#include "fiscal/log.h"

#include <string>

#include "platform/clock.h"
#include "platform/files.h"

namespace tellaxis {

namespace {

/// Decimal digits of `number`, with zeros before them up to `width`.
std::string digits(int number, std::size_t width) {
  std::string text = std::to_string(number);
  return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

}  // namespace

void ScriviLog(platform::Host& host, std::string_view logFile, std::string_view message) {
  const platform::DateTime now = host.clock.now();
  std::string line = digits(now.day, 2) + "/" + digits(now.month, 2) + "/" + digits(now.year, 4) + " " +
                     digits(now.hour, 2) + ":" + digits(now.minute, 2) + " - ";
  line.append(message).append("\r\n");
  host.files.append(logFile, line);
}

}  // namespace tellaxis
