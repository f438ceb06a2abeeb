// Port choice: port names and the walk over the installed printers.
#include "courtesy/port_choice.h"

#include <vector>

#include "core/values.h"
#include "platform/locale.h"

#include "text/letter_case.h"

namespace tellaxis {

namespace {

bool matches(std::string_view left, std::string_view right, Matching matching) {
  return matching == Matching::exact ? left == right : equalIgnoringCase(left, right);
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

std::optional<platform::InstalledPrinter> selectPrinterOnPort(platform::Host& host, std::string_view port,
                                                              Matching matching) {
  const auto printers = host.Printer.Printers().value_or(std::vector<platform::InstalledPrinter>());
  for (std::size_t i = 0; i < printers.size(); ++i) {
    if (!matches(printers[i].Port, port, matching)) continue;
    host.Printer.select(i);
    return printers[i];
  }
  return std::nullopt;
}

}  // namespace tellaxis
