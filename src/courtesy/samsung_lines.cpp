// Samsung lines: text, bar code and end of receipt.
#include "courtesy/samsung_lines.h"

namespace tellaxis {

namespace {

constexpr double controlSize = 9;
constexpr double controlSizeOn350 = 9.5;
constexpr double controlSizeOfBarCode = 8.5;
constexpr std::string_view paperCut = "P";
constexpr std::string_view blankLine = " ";
constexpr int feedWithoutCut = 4;

constexpr platform::Color black{};
constexpr platform::Color red{.red = 255};

void endReceipt(platform::PrinterObject& printer, const Markup& markup) {
  if (is350Device(printer)) {
    printer.FontSize(controlSizeOn350);
    printer.FontName(controlFont);
    printer.Print(blankLine);
    printer.Print(blankLine);
    printer.Print(paperCut);
  } else {
    printer.FontName(markup.Carattere);
    for (int i = 0; i < feedWithoutCut; ++i) printer.Print(blankLine);
  }
  printer.EndDoc();
}

void printBarCode(platform::PrinterObject& printer, const Markup& markup) {
  printer.FontSize(controlSizeOfBarCode);
  printer.FontName(controlFont);
  printer.Print("r");
  printer.Print("x");
  printer.FontSize(markup.Dimensione);
  printer.FontName(barCodeFont);
  printer.Print(markup.Testo);
}

/// Small print sets the size alone: its font takes effect with the next line that sets a font.
void printText(platform::PrinterObject& printer, const Pitch& pitch, Markup& markup) {
  if (markup.PassoPiccolo == pitch.takenForSmall) {
    markup.Carattere = is350Device(printer) ? "FontA1x1" : "FontB1x1";
    printer.FontSize(pitch.takenForSmall);
  } else {
    printer.FontName(markup.Carattere);
    printer.FontSize(pitch.usualSize.value_or(markup.PassoPiccolo));
  }
  printer.Print(markup.Testo);
}

}  // namespace

void openReceipt(platform::PrinterObject& printer, const SamsungModel& model) {
  if (model.openingControl.empty()) return;
  printer.FontSize(controlSize);
  printer.FontName(controlFont);
  printer.Print(model.openingControl);
}

void printLineOn500(platform::PrinterObject& printer, const SamsungModel&, Markup& markup) {
  if (markup.Comando == 0) {
    printer.FontName(markup.Carattere);
    printer.FontSize(markup.Dimensione);
    printer.ForeColor(markup.Colore == "R" ? red : black);
    if (markup.Grassetto == 1) printer.FontBold(true);
    printer.Print(markup.Testo);
    printer.FontBold(false);
  } else {
    printer.FontSize(controlSize);
    printer.FontName(controlFont);
    printer.Print(paperCut);
    printer.EndDoc();
  }
}

void printLineOnOthers(platform::PrinterObject& printer, const SamsungModel& model, Markup& markup) {
  if (markup.Comando == 1)
    endReceipt(printer, markup);
  else if (markup.Carattere == barCodeFont)
    printBarCode(printer, markup);
  else
    printText(printer, model.pitch, markup);
}

}  // namespace tellaxis
