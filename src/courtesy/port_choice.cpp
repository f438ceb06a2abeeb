// Port choice: port names and the walk over the installed printers.
#include "courtesy/port_choice.h"

#include "core/ini/values.h"
#include "platform/locale.h"
#include "text/letter_case.h"
#include "text/trimmed.h"

namespace tellaxis {

namespace {

bool matches(std::string_view left, std::string_view right, Matching matching) {
  return matching == Matching::exact ? left == right : equalIgnoringCase(left, right);
}

/// "COM3" of "COM3:".
std::string_view withoutColon(std::string_view port) {
  return port.ends_with(':') ? port.substr(0, port.size() - 1) : port;
}

/// One of the ports of a pool ("COM3:,COM4:"); the colon at the end does not count.
bool isAmong(std::string_view pool, std::string_view port, Matching matching) {
  while (!withoutColon(port).empty()) {
    const std::size_t comma = pool.find(',');
    if (matches(withoutColon(pool.substr(0, comma)), withoutColon(port), matching)) return true;
    if (comma == std::string_view::npos) return false;
    pool.remove_prefix(comma + 1);
  }
  return false;
}

std::string setting(const Bridge& bridge) {
  return std::string(trimmed(textOf(bridge.settings.Cort_Com, bridge.host.locale.regional())));
}

}  // namespace

std::string serialPortName(const Bridge& bridge) { return "COM" + setting(bridge) + ":"; }

std::string portName(const Bridge& bridge) {
  const bool isNumber = numberFromText(setting(bridge), bridge.host.locale.regional()).has_value();
  return isNumber ? serialPortName(bridge) : setting(bridge) + ":";
}

platform::PrinterSearch findPrinterOnPort(platform::Host& host, std::string_view port, Matching matching) {
  std::size_t place = 0;
  platform::PrinterSearch inOtherWords;
  const platform::PrinterSearch found = host.Printer.find([&](const platform::InstalledPrinter& printer) {
    if (!inOtherWords.index && isAmong(printer.Port, port, matching))
      inOtherWords = {.complete = true, .index = place, .printer = printer};
    ++place;
    return matches(printer.Port, port, matching);
  });
  return found.index ? found : inOtherWords;
}

std::optional<platform::InstalledPrinter> selectPrinterOnPort(platform::Host& host, std::string_view port,
                                                              Matching matching) {
  const platform::PrinterSearch found = findPrinterOnPort(host, port, matching);
  if (!found.index) return std::nullopt;
  host.Printer.select(*found.index);
  return found.printer;
}

}  // namespace tellaxis
