// Samsung: the course of one job.
#include "courtesy/samsung.h"

#include "core/application.h"
#include "core/input/text_lines.h"
#include "courtesy/port_choice.h"
#include "courtesy/samsung_lines.h"
#include "courtesy/samsung_markup.h"
#include "courtesy/samsung_models.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/trace.h"

namespace tellaxis {

namespace {

void printLogo(platform::PrinterObject& printer, std::string_view file) {
  const auto picture = printer.LoadPicture(file);
  printer.CurrentX(0);
  printer.CurrentY(0);
  const double x = printer.CurrentX();
  const double y = printer.CurrentY();
  if (picture) printer.PaintPicture(*picture, x, y);
  printer.EndDoc();
}

}  // namespace

platform::PrinterSearch findSamsung(Bridge& bridge) {
  return findPrinterOnPort(bridge.host, serialPortName(bridge), Matching::exact);
}

void Cort_StampaSamsung(Bridge& bridge, std::string_view jobFile) {
  platform::Host& host = bridge.host;
  TextLines lines(host, jobFile);
  const auto printer = selectPrinterOnPort(host, serialPortName(bridge), Matching::exact);
  if (!printer) {
    lines.close();
    host.trace.failed("preconto", jobFile, "nessuna stampante sulla porta " + serialPortName(bridge));
    host.dialogs.show("Stampante NON trovata", applicationTitle, platform::Buttons::ok);
    return;
  }
  const SamsungModel& model = samsungModelOf(printer->DeviceName);
  if (bridge.settings.Cort_Logo) printLogo(host.Printer, bridge.settings.Cort_File);
  openReceipt(host.Printer, model);

  Markup markup;
  while (const auto line = lines.next()) {
    readLine(host, model, *line, markup);
    model.printLine(host.Printer, model, markup);
  }
  lines.close();
  if (model.deletesJobFile) host.files.remove(jobFile);
}

}  // namespace tellaxis
