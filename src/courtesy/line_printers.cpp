// Line printers: line filters and document ends.
#include "courtesy/line_printers.h"

#include "core/input/text_lines.h"
#include "courtesy/port_choice.h"
#include "courtesy/sostituisci_testo.h"
#include "platform/files.h"
#include "platform/printers.h"
#include "platform/trace.h"

namespace tellaxis {

namespace {

constexpr std::string_view mark =
    "\xA7"
    "D";
constexpr std::string_view printedLine = "N:SCO:TXT:";
constexpr std::string_view blankLine = " \r\n";
constexpr int blankLines = 5;

void endJob(platform::Host& host, TextLines& lines, std::string_view jobFile) {
  host.Printer.EndDoc();
  lines.close();
  host.files.remove(jobFile);
}

}  // namespace

platform::PrinterSearch findLinePrinter(Bridge& bridge) {
  platform::Host& host = bridge.host;
  const platform::PrinterSearch onPort = findPrinterOnPort(host, portName(bridge), Matching::ignoringCase);
  return onPort.index ? onPort : platform::findPrinterNamed(host.Printer, host.Printer.DeviceName());
}

void Cort_StampaOlivetti(Bridge& bridge, std::string_view jobFile) {
  platform::Host& host = bridge.host;
  selectPrinterOnPort(host, portName(bridge), Matching::ignoringCase);
  TextLines lines(host, jobFile);
  while (const auto line = lines.next()) {
    host.Printer.FontName("FontA11");
    if (const auto text = SostituisciTesto(*line, mark, ""))
      host.Printer.Print(*text);
    else
      host.trace.failed("SostituisciTesto", jobFile, "riga troppo lunga");
  }
  endJob(host, lines, jobFile);
}

void Cort_StampaUnipos(Bridge& bridge, std::string_view jobFile) {
  platform::Host& host = bridge.host;
  selectPrinterOnPort(host, portName(bridge), Matching::ignoringCase);
  TextLines lines(host, jobFile);
  while (const auto line = lines.next()) {
    if (!line->starts_with(printedLine)) continue;
    host.Printer.FontName("Courier New");
    host.Printer.FontSize(9);
    host.Printer.Print(line->substr(printedLine.size()));
  }
  for (int i = 0; i < blankLines; ++i) host.Printer.Print(blankLine);
  endJob(host, lines, jobFile);
}

}  // namespace tellaxis
