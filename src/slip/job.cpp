// Slip job: printer first, then layout.
#include "slip/job.h"

#include "platform/printers.h"
#include "platform/trace.h"
#include "slip/layouts.h"
#include "slip/printer_choice.h"
#include "slip/require.h"

namespace tellaxis {

namespace {

/// Begins anew where the file, or the printer that it goes to, is another one than before.
void recall(Bridge& bridge, PrintedForms& printed) {
  const Settings& settings = bridge.settings;
  const auto file = bridge.host.files.identity(settings.RF_File);
  require(file.has_value(), "lettura del file");
  if (printed.file != *file || printed.printer != settings.RF_Stampante)
    printed = {.file = *file, .printer = settings.RF_Stampante};
}

}  // namespace

void LanciaFileRF(Bridge& bridge, PrintedForms& printed) {
  const Settings& settings = bridge.settings;
  selectPrinterNamed(bridge.host.Printer, settings.RF_Stampante);
  const SlipLayout* layout = slipLayoutOf(settings.RF_Stampante);
  if (layout == nullptr) {
    bridge.host.trace.failed("ricevuta", settings.RF_File, "nessun modulo per la stampante " + settings.RF_Stampante);
    return;
  }
  require(bridge.host.files.canRemove(settings.RF_File), "il file non si potrebbe cancellare");
  recall(bridge, printed);
  if (!printed.all) {
    abandoningOnFailure(bridge.host.Printer, [&] { layout->print(bridge, *layout, printed); });
    printed.all = true;
  }
  require(bridge.host.files.remove(settings.RF_File), "cancellazione del file");
  printed = {};
}

std::optional<platform::InstalledPrinter> slipPrinter(Bridge& bridge) {
  const std::string& name = bridge.settings.RF_Stampante;
  if (slipLayoutOf(name) == nullptr) return std::nullopt;
  platform::PrinterObject& printers = bridge.host.Printer;
  platform::PrinterSearch found = platform::findPrinterNamed(printers, name);
  if (found.complete && !found.index) found = platform::findPrinterNamed(printers, printers.DeviceName());
  if (!found.index) return std::nullopt;
  return found.printer;
}

}  // namespace tellaxis
