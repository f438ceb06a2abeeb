// Test print: checks, rows and messages.
#include "slip/test_print.h"

#include <cstdint>
#include <string>
#include <string_view>

#include "core/application.h"
#include "core/ini/values.h"
#include "platform/dialogs.h"
#include "platform/locale.h"
#include "platform/printers.h"
#include "slip/layouts.h"
#include "slip/printer_choice.h"
#include "slip/require.h"

namespace tellaxis {

namespace {

// Its first character shows where the row's left edge is.
constexpr std::string_view ruler = "A234567890123456789012345678901234567890123456789012345678901234567890";

constexpr std::string_view notSetUp =
    "Nella schermata principale non sono stati impostati correttamtente\r\n"
    "i parametri relativi alla Epson TM-U295.";
constexpr std::string_view noNumbers = "Impostare numero righe e numero colonne.";
constexpr std::string_view resultTitle = "Risultato TEST";
constexpr std::string_view whatToCheck =
    "Al termine della stampa\r\n"
    "Controllare il numero delle righe stampate\r\n"
    "e dei caratteri per riga\r\n"
    "e utilizzare le informazioni acquisite per impostare i valori in Tellaxis e Orbis51";

bool isSetUp(const Bridge& bridge) {
  return bridge.settings.RF_Stampante == rowPrinter &&
         isGreaterThanZero(bridge.settings.RF_Seriale, bridge.host.locale.regional());
}

std::int16_t integerIn(const TextBox& box, const RegionalSettings& regional) {
  const auto number = integerFrom(box.Text, regional);
  require(number.has_value(), "numero fuori dai limiti");
  return *number;
}

std::string numberedRow(int number) { return (number < 10 ? "R0" : "R") + std::to_string(number); }

void printTest(platform::PrinterObject& printer, int rows, int columns) {
  const std::string_view firstRow = ruler.substr(0, static_cast<std::size_t>(columns));
  for (int row = 1; row <= rows; ++row) require(printer.Print(row == 1 ? firstRow : numberedRow(row)), "stampa");
  require(printer.EndDoc(), "fine documento");
}

}  // namespace

void cmdTest_Click(Bridge& bridge, const fStr_U295& form) {
  const auto& regional = bridge.host.locale.regional();
  const auto say = [&](std::string_view text, std::string_view title) {
    bridge.host.dialogs.show(text, title, platform::Buttons::ok);
  };
  if (!isSetUp(bridge)) return say(notSetUp, applicationTitle);
  if (!numberFromText(form.testRow.Text, regional) || !numberFromText(form.testChar.Text, regional))
    return say(noNumbers, applicationTitle);
  selectPrinterNamed(bridge.host.Printer, bridge.settings.RF_Stampante);
  const std::int16_t columns = integerIn(form.testChar, regional);
  require(columns >= 0, "numero di colonne negativo");
  const std::int16_t rows = integerIn(form.testRow, regional);
  abandoningOnFailure(bridge.host.Printer, [&] { printTest(bridge.host.Printer, rows, columns); });
  say(whatToCheck, resultTitle);
}

}  // namespace tellaxis
