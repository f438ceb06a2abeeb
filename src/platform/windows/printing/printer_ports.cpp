// Printer ports: from names and entries to printers.
#include "platform/windows/printing/printer_ports.h"

#include <algorithm>

#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

constexpr std::string_view askingPorts[] = {"FILE:", "PORTPROMPT:", "XPSPORT:", "SHRFAX:"};

}  // namespace

std::string portOfDevicesEntry(std::string_view entry) {
  const std::size_t comma = entry.find(',');
  return comma == std::string_view::npos ? std::string() : std::string(entry.substr(comma + 1));
}

std::vector<InstalledPrinter> withPorts(const std::vector<std::string>& names,
                                        const std::vector<InstalledPrinter>& localPrinters,
                                        const std::function<std::optional<std::string>(const std::string&)>& entryOf) {
  std::vector<InstalledPrinter> printers;
  printers.reserve(names.size());
  for (const std::string& name : names) {
    const auto local = std::ranges::find(localPrinters, name, &InstalledPrinter::DeviceName);
    if (local != localPrinters.end())
      printers.push_back(*local);
    else
      printers.push_back({name, portOfDevicesEntry(entryOf(name).value_or(""))});
  }
  return printers;
}

bool asksForAnswer(std::string_view port) {
  while (!port.empty()) {
    const std::size_t comma = std::min(port.find(','), port.size());
    const std::string_view one = port.substr(0, comma);
    if (std::ranges::any_of(askingPorts, [one](std::string_view asking) { return equalIgnoringCase(one, asking); }))
      return true;
    port.remove_prefix(std::min(comma + 1, port.size()));
  }
  return false;
}

}  // namespace tellaxis::platform
