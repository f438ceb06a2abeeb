// Setup: filling the list and following the choice.
#include "slip/setup.h"

#include "core/ini/ini.h"
#include "platform/printers.h"

namespace tellaxis {

void RF_StartUP_Valori(Bridge& bridge) {
  const auto printers = bridge.host.Printer.Printers();
  if (!printers) return;
  for (const platform::InstalledPrinter& printer : *printers) bridge.form.RF_Printer.List.push_back(printer.DeviceName);
}

void RF_Printer_Change(Bridge& bridge) {
  MainForm& form = bridge.form;
  const platform::PrinterSearch named = platform::findPrinterNamed(bridge.host.Printer, form.RF_Printer.Text);
  if (!named.complete) return;
  if (named.index) {
    form.RF_COM.Text = named.printer.Port;
    return;
  }
  const std::string& file = bridge.settings.settingsFile;
  ScriviIni(bridge.host, rawSection, "RF_Stampante", form.RF_Printer.Text, file);
  ScriviIni(bridge.host, rawSection, "RF_Seriale", form.RF_COM.Text, file);
}

}  // namespace tellaxis
