// Sample jobs: tables of lines; accents, the euro sign, every font, bold, colour and the bar code.
#include "trial/sample_jobs.h"

#include <span>
#include <string_view>

#include "courtesy/port_choice.h"
#include "courtesy/printer_types.h"
#include "courtesy/samsung_models.h"
#include "display/families.h"
#include "slip/layouts.h"

namespace tellaxis {

namespace {

using Lines = std::span<const std::string_view>;

constexpr std::string_view lineEnd = "\r\n";

// At most as many characters as the shortest display line has.
constexpr std::string_view displayUpper = "Prova: \xE8 \xE0 \xF2 \xF9 \xEC \x80";
constexpr std::string_view displayLower = "Totale       12,50 \x80";
constexpr std::size_t displayWidth = 20;

// Text, command, size, style, bold, colour.
constexpr std::string_view samsung500[] = {
    "Prova di Tellaxis#0#18#1#0#N",
    "Accenti \xE0 \xE8 \xE9 \xEC \xF2 \xF9, euro \x80#0#9#0#0#N",
    "Carattere piccolo#0#8#0#0#N",
    "Grassetto#0#9#0#1#N",
    "Rosso#0#9#0#0#R",
    "Fine della prova#1",
};

// Text, command, pitch, style; 13 is the bar code.
constexpr std::string_view samsungOthers[] = {
    "Prova di Tellaxis#0#14#1", "Accenti \xE0 \xE8 \xE9 \xEC \xF2 \xF9, euro \x80#0#14#0",
    "Carattere piccolo#0#8#0",  "8001234567897#0#14#13",
    "Fine della prova#0#14#0",  "Taglio#1",
};

constexpr std::string_view olivetti[] = {
    "\xA7"
    "DProva di Tellaxis",
    "Accenti \xE0 \xE8 \xE9 \xEC \xF2 \xF9, euro \x80",
    "Fine della prova",
};

constexpr std::string_view unipos[] = {
    "N:SCO:TXT:Prova di Tellaxis",
    "N:SCO:TXT:Accenti \xE0 \xE8 \xE9 \xEC \xF2 \xF9, euro \x80",
    "N:SCO:TXT:Fine della prova",
};

constexpr std::string_view dpt282[] = {
    "N2 :Prova di Tellaxis",
    "N2 :Accenti \xE0 \xE8 \xE9 \xEC \xF2 \xF9, euro \x80",
    "N2 :Fine della prova",
};

// Both headers and the body; a comma would end a record that is not in quotes.
constexpr std::string_view slip[] = {
    "\"I1 Prova di Tellaxis\"",
    "\"I1 Ricevuta di prova, non valida\"",
    "\"I2 Spett.le cliente di prova\"",
    "\"RR Accenti \xE0 \xE8 \xE9 \xEC \xF2 \xF9, euro \x80\"",
    "\"RR Totale                      12,50\"",
    "\"RR Fine della prova\"",
};

struct CourtesySample {
  std::string_view type;
  Lines lines;
};

constexpr CourtesySample courtesySamples[] = {
    {courtesy_type::olivetti, olivetti}, {courtesy_type::unipos, unipos}, {courtesy_type::dpt282, dpt282}};

std::string textOf(Lines lines) {
  std::string text;
  for (const std::string_view line : lines) text.append(line).append(lineEnd);
  return text;
}

std::string displaySample(std::string_view type) {
  const DisplayFamily* family = displayFamilyNamed(type);
  if (family == nullptr) return {};
  std::string text(displayUpper);
  if (family->shown == LinesShown::firstOnly)
    text.append(displayWidth - text.size(), ' ');
  else
    text.append(lineEnd);
  return text.append(displayLower).append(lineEnd);
}

/// The class is told by the name of the printer on the port.
std::string samsungSample(const Bridge& bridge) {
  const auto found = findPrinterOnPort(bridge.host, serialPortName(bridge), Matching::exact);
  const SamsungModel& model = samsungModelOf(found.printer.DeviceName);
  return textOf(model.Modello == "500" ? Lines(samsung500) : Lines(samsungOthers));
}

std::string courtesySample(const Bridge& bridge) {
  if (bridge.settings.Cort_Printer == courtesy_type::samsung) return samsungSample(bridge);
  for (const CourtesySample& sample : courtesySamples)
    if (sample.type == bridge.settings.Cort_Printer) return textOf(sample.lines);
  return {};
}

}  // namespace

std::string sampleJob(const Bridge& bridge, Device device) {
  switch (device) {
    case Device::display: return displaySample(bridge.settings.Display_Type);
    case Device::courtesyPrinter: return courtesySample(bridge);
    case Device::slipPrinter:
      return slipLayoutOf(bridge.settings.RF_Stampante) == nullptr ? std::string() : textOf(slip);
    case Device::fiscalPrinter: break;
  }
  return {};
}

}  // namespace tellaxis
