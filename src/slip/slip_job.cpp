// Slip job: printer first, then layout.
#include "slip/slip_job.h"

#include "slip/layouts.h"
#include "slip/printer_choice.h"

namespace tellaxis {

void LanciaFileRF(Bridge& bridge) {
  selectPrinterNamed(bridge.host.Printer, bridge.settings.RF_Stampante);
  if (const SlipLayout* layout = slipLayoutOf(bridge.settings.RF_Stampante)) layout->print(bridge, *layout);
}

}  // namespace tellaxis
