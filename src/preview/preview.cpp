// Preview: the device's own procedure on a copy of the job.
#include "preview/preview.h"

#include "core/bridge.h"
#include "core/settings.h"
#include "core/step_failed.h"
#include "courtesy/job.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/printers.h"
#include "slip/job.h"
#include "slip/printed_forms.h"

namespace tellaxis {

namespace {

/// Nobody is asked, and nobody is told.
class NoDialogs : public platform::Dialogs {
 public:
  platform::Answer show(std::string_view /*text*/, std::string_view /*title*/, platform::Buttons buttons) override {
    return buttons == platform::Buttons::yesNo ? platform::Answer::no : platform::Answer::ok;
  }
  void processEvents() override {}
};

/// What had been printed of a slip before a step failed is shown all the same.
void printSlip(Bridge& bridge) {
  PrintedForms printed;
  try {
    LanciaFileRF(bridge, printed);
  } catch (const StepFailed&) {
    return;
  }
}

}  // namespace

bool printPreview(platform::Host& host, const PreviewRequest& request) {
  NoDialogs dialogs;
  platform::Host quiet = host.with(host.clock, dialogs, host.tray);
  Bridge bridge(quiet);
  setMainFolder(bridge.settings, request.mainFolder);
  CaricaImpostazioni(bridge);
  bridge.settings.RF_File = request.workingAt;
  const bool isSlip = request.device == Device::slipPrinter;
  const bool isCourtesy = request.device == Device::courtesyPrinter;
  if (!(isSlip && slipPrinter(bridge)) && !(isCourtesy && courtesyPrinter(bridge))) return false;
  if (!host.files.copy(request.job, request.workingAt)) return false;
  if (isSlip)
    printSlip(bridge);
  else
    Cort_StampaFile(bridge, request.workingAt);
  quiet.Printer.endOpenDocuments();
  if (host.files.exists(request.workingAt)) host.files.remove(request.workingAt);
  return true;
}

}  // namespace tellaxis
