// Printers list: three lines for each printer.
#include "slip/printers_list.h"

#include <string>
#include <vector>

#include "platform/printers.h"

namespace tellaxis {

void Form_Load(platform::Host& host, fStampa_Porte& form) {
  std::string& list = form.txListaStampanti.Text;
  for (const auto& printer : host.Printer.Printers().value_or(std::vector<platform::InstalledPrinter>())) {
    list += "Port    > " + printer.Port + "\r\n";
    list += "Printer > " + printer.DeviceName + "\r\n";
    list += std::string(37, '-') + "\r\n";
  }
}

}  // namespace tellaxis
