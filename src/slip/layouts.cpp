// Layouts: the steps of each layout, and the walk through them.
#include "slip/layouts.h"

#include "platform/files.h"
#include "platform/printers.h"
#include "slip/form.h"
#include "slip/records.h"
#include "slip/require.h"

namespace tellaxis {

namespace {

using enum SlipStatement;

constexpr std::string_view oneLine = "\r\n";
constexpr std::string_view topMargin = "\r\n\r\n";
constexpr std::string_view shortGap = "\r\n\r\n\r\n";
constexpr std::string_view longGap = "\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n";

// Two copies, one under the other. The first print opens the document.
constexpr SlipStep receiptSteps[] = {
    {.statement = print},
    {.statement = moveToTop},

    {.statement = fontSize, .size = 10},
    {.statement = fontName, .text = "fontB12"},
    {.statement = printFirstHeader},
    {.statement = fontSize, .size = 10},
    {.statement = fontName, .text = "fontA11"},
    {.statement = printSecondHeader},
    {.statement = print, .text = oneLine},
    {.statement = printSection},
    {.statement = printPadOfLastSection},

    {.statement = print, .text = longGap},

    {.statement = fontSize, .size = 10},
    {.statement = fontName, .text = "fontB12"},
    {.statement = printFirstHeader},
    {.statement = fontName, .text = "fontA11"},
    {.statement = printSecondHeader},
    {.statement = print, .text = oneLine},
    {.statement = printSection},
};

constexpr SlipStep kubeSteps[] = {
    {.statement = print},
    {.statement = moveToTop},
    {.statement = fontSize, .size = 10},
    {.statement = fontName, .text = "Courier New"},
    {.statement = fontBold},
    {.statement = print, .text = topMargin},

    {.statement = printFirstHeader},
    {.statement = printSecondHeader},
    {.statement = print, .text = oneLine},
    {.statement = printSection},
    {.statement = printPadOfLastSection},

    {.statement = print, .text = shortGap},

    {.statement = printFirstHeader},
    {.statement = printSecondHeader},
    {.statement = print, .text = oneLine},
    {.statement = printSection},
};

/// Rows of one form on the row printer.
constexpr int rowsOfForm = 41;

bool carryOut(const SlipStep& step, platform::PrinterObject& printer, const SlipForm& form, std::size_t section) {
  switch (step.statement) {
    case print: return printer.Print(step.text);
    case printFirstHeader: return printer.Print(form.firstHeader.text);
    case printSecondHeader: return printer.Print(form.secondHeader.text);
    case printSection: return printer.Print(form.sections[section]);
    case printPadOfLastSection: return section != form.lastSection || printer.Print(form.bodyPad);
    case fontName: return printer.FontName(step.text);
    case fontSize: return printer.FontSize(step.size);
    case fontBold: return printer.FontBold(true);
    case moveToTop: return printer.CurrentY(0);
  }
  return false;
}

void endForm(platform::PrinterObject& printer, PrintedForms& printed) {
  require(printer.EndDoc(), "fine documento");
  ++printed.count;
}

/// A document for each section, printed once the whole job has been read.
void printSections(Bridge& bridge, const SlipLayout& layout, PrintedForms& printed) {
  Records records(bridge.host, bridge.settings.RF_File);
  const SlipForm form = readSlipForm(records);
  records.close();
  platform::PrinterObject& printer = bridge.host.Printer;
  for (auto section = static_cast<std::size_t>(printed.count); section <= form.lastSection; ++section) {
    for (const SlipStep& step : layout.steps) require(carryOut(step, printer, form, section), "stampa");
    endForm(printer, printed);
  }
}

/// Each record is a row, whatever its marker; a document for each form.
void printRows(Bridge& bridge, const SlipLayout&, PrintedForms& printed) {
  Records records(bridge.host, bridge.settings.RF_File);
  platform::PrinterObject& printer = bridge.host.Printer;
  std::int64_t rowsDone = std::int64_t{printed.count} * rowsOfForm;
  int rows = 0;
  while (const auto record = records.next()) {
    const std::string_view text = textOfRecord(*record);
    if (rowsDone-- > 0) continue;
    require(printer.FontName("FontB11"), "scelta del carattere");
    require(printer.Print(text), "stampa");
    if (++rows < rowsOfForm) continue;
    endForm(printer, printed);
    rows = 0;
  }
  if (rows != 0) endForm(printer, printed);
}

constexpr SlipLayout layouts[] = {
    {.printer = "EPSON TM-L90 Receipt", .print = printSections, .steps = receiptSteps},
    {.printer = "Custom KUBE Ric. Fisc. [A]", .print = printSections, .steps = kubeSteps},
    {.printer = rowPrinter, .print = printRows},
};

}  // namespace

const SlipLayout* slipLayoutOf(std::string_view printer) {
  for (const SlipLayout& layout : layouts)
    if (layout.printer == printer) return &layout;
  return nullptr;
}

}  // namespace tellaxis
