// Printer choice: the walk over the installed printers.
#include "slip/printer_choice.h"

#include "slip/require.h"

namespace tellaxis {

void selectPrinterNamed(platform::PrinterObject& printer, std::string_view deviceName) {
  const auto printers = printer.Printers();
  require(printers.has_value(), "elenco delle stampanti");
  for (std::size_t i = 0; i < printers->size(); ++i) {
    if ((*printers)[i].DeviceName != deviceName) continue;
    require(printer.select(i), "scelta della stampante");
    return;
  }
}

}  // namespace tellaxis
