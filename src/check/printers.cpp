// Printers: the list, and the printer that takes the place of a missing one.
#include "check/printers.h"

#include <vector>

#include "check/words.h"
#include "platform/printers.h"

namespace tellaxis {

namespace {

std::string printersThere(platform::PrinterObject& printers) {
  const auto installed = printers.Printers();
  if (!installed) return "L'elenco delle stampanti non si pu\xF2 leggere.";
  if (installed->empty()) return "Non c'\xE8 nessuna stampante.";
  std::vector<std::string> names;
  for (const platform::InstalledPrinter& printer : *installed)
    names.push_back(std::string(printer.DeviceName).append(" (").append(printer.Port).append(")"));
  return "Ci sono: " + listed(names) + ".";
}

}  // namespace

void addMissingPrinter(const CheckScene& scene, Findings& findings, const std::string& missing,
                       WithoutPrinter without) {
  platform::PrinterObject& printers = scene.bridge.host.Printer;
  const std::string current = without == WithoutPrinter::printsOnCurrent ? printers.DeviceName() : std::string();
  const std::string instead = current.empty() ? "non si stampa nulla" : "si stampa su " + current;
  findings.add(Code::printerMissing, missing + ": " + instead + ". " + printersThere(printers));
}

void checkPrinterState(const CheckScene& scene, Findings& findings, const std::string& deviceName) {
  const auto& state = platform::wordsOf(scene.bridge.host.Printer.state(deviceName));
  if (state.saysNo)
    findings.add(Code::printerNotReady,
                 "La stampante " + deviceName + " non pu\xF2 stampare: " + std::string(state.italian) + ".");
}

}  // namespace tellaxis
