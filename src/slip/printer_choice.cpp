// Printer choice: by the exact name.
#include "slip/printer_choice.h"

#include "slip/require.h"

namespace tellaxis {

void selectPrinterNamed(platform::PrinterObject& printer, std::string_view deviceName) {
  const platform::PrinterSearch named = platform::findPrinterNamed(printer, deviceName);
  require(named.complete, "elenco delle stampanti");
  if (named.index) require(printer.select(*named.index), "scelta della stampante");
}

}  // namespace tellaxis
