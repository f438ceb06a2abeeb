// Courtesy job: from the printer type to what prints on it.
#include "courtesy/job.h"

#include "courtesy/printer_types.h"
#include "platform/trace.h"

namespace tellaxis {

void Cort_StampaFile(Bridge& bridge, std::string_view jobFile) {
  for (const CourtesyPrinterType& type : courtesyPrinterTypes)
    if (type.name == bridge.settings.Cort_Printer && type.print != nullptr) return type.print(bridge, jobFile);
  bridge.host.trace.failed("preconto", jobFile, "il tipo di stampante non stampa: " + bridge.settings.Cort_Printer);
}

std::optional<platform::InstalledPrinter> courtesyPrinter(Bridge& bridge) {
  for (const CourtesyPrinterType& type : courtesyPrinterTypes) {
    if (type.name != bridge.settings.Cort_Printer || type.find == nullptr) continue;
    const platform::PrinterSearch found = type.find(bridge);
    if (found.index) return found.printer;
  }
  return std::nullopt;
}

}  // namespace tellaxis
