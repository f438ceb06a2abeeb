// Courtesy printer: its type, its printer or its line, its logo.
#include <algorithm>
#include <iterator>

#include "check/devices/devices.h"
#include "check/line.h"
#include "check/printers.h"
#include "check/waiting_jobs.h"
#include "check/words.h"
#include "courtesy/port_choice.h"
#include "courtesy/printer_types.h"
#include "courtesy/samsung_models.h"
#include "platform/printers.h"

namespace tellaxis {

namespace {

/// How a type finds its printer, and what becomes of a receipt without it.
struct PrinterUse {
  std::string_view type;
  std::string (*port)(const Bridge& bridge) = nullptr;  ///< none: the serial line itself
  Matching matching = Matching::exact;
  WithoutPrinter without = WithoutPrinter::printsNothing;
  std::string_view controlFont = {};  ///< in which it sends its commands, where it does
};

constexpr PrinterUse printerUses[] = {
    {.type = courtesy_type::olivetti,
     .port = portName,
     .matching = Matching::ignoringCase,
     .without = WithoutPrinter::printsOnCurrent},
    {.type = courtesy_type::samsung, .port = serialPortName, .controlFont = controlFont},
    {.type = courtesy_type::dpt282},
    {.type = courtesy_type::unipos,
     .port = portName,
     .matching = Matching::ignoringCase,
     .without = WithoutPrinter::printsOnCurrent},
};

void checkLogo(const CheckScene& scene, Findings& findings) {
  const std::string& file = scene.bridge.settings.Cort_File;
  if (!scene.inspection.look(file).isFile)
    findings.add(Code::logoMissing, "Il logo " + shown(file) + " (CORT_File) non c'\xE8.");
  else if (!scene.bridge.host.Printer.LoadPicture(file))
    findings.add(Code::logoUnreadable, "Il logo " + file + " (CORT_File) non si pu\xF2 leggere come immagine.");
}

void checkPrinter(const CheckScene& scene, const PrinterUse& use, const LineKeys& line, Findings& findings) {
  if (use.port == nullptr) return checkLine(scene, findings, line);
  const std::string port = use.port(scene.bridge);
  const platform::PrinterSearch found = findPrinterOnPort(scene.bridge.host, port, use.matching);
  if (!found.index)
    return addMissingPrinter(scene, findings, "Nessuna stampante installata \xE8 sulla porta " + port + " (CORT_COM)",
                             use.without);
  const std::string& name = found.printer.DeviceName;
  checkPrinterState(scene, findings, name);
  if (!use.controlFont.empty() && !scene.bridge.host.Printer.hasFont(name, use.controlFont))
    findings.add(Code::controlFontMissing, "Il driver della stampante " + name + " non ha il carattere " +
                                               std::string(use.controlFont) +
                                               ": la carta non viene tagliata e i comandi si stampano come lettere.");
}

}  // namespace

void checkCourtesy(const CheckScene& scene, Findings& findings) {
  const Settings& settings = scene.bridge.settings;
  if (!settings.Cort_Active) return findings.add(Code::off, "Spenta (CORT_Active).");
  const LineKeys line{
      .portKey = "CORT_COM", .port = settings.Cort_Com, .settingsKey = "CORT_Sett", .settings = settings.Cort_Sett};
  const auto* const use = std::ranges::find(printerUses, std::string_view(settings.Cort_Printer), &PrinterUse::type);
  const bool known = use != std::end(printerUses);
  const bool serial = known && use->port == nullptr;
  findings.add(Code::lookedAt, "Tipo " + shown(settings.Cort_Printer) + " su " +
                                   (serial ? lineText(scene, line) : portName(scene.bridge)) + ".");
  if (known)
    checkPrinter(scene, *use, line, findings);
  else
    findings.add(Code::printerTypeUnknown,
                 "Il tipo di stampante \"" + settings.Cort_Printer + "\" (CORT_Printer) non stampa.");
  if (settings.Cort_Logo && settings.Cort_Printer == courtesy_type::samsung) checkLogo(scene, findings);
  checkDropFolder(scene, findings, settings.mainFolder + "\\CortOrbis", "Cort_Vuoto");
}

}  // namespace tellaxis
