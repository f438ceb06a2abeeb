// Slip printer: its layout, its printer and its job file.
#include "check/devices/devices.h"
#include "check/printers.h"
#include "check/waiting_jobs.h"
#include "check/words.h"
#include "platform/locale.h"
#include "platform/printers.h"
#include "slip/layouts.h"

namespace tellaxis {

namespace {

void checkPrinter(const CheckScene& scene, Findings& findings) {
  const Settings& settings = scene.bridge.settings;
  const std::string& name = settings.RF_Stampante;
  if (slipLayoutOf(name) == nullptr)
    findings.add(Code::layoutUnknown, "Per la stampante \"" + name + "\" (RF_Stampante) non c'\xE8 un modulo.");
  if (!isGreaterThanZero(settings.RF_Seriale, scene.bridge.host.locale.regional()))
    findings.add(Code::portMissing,
                 "La porta della stampante (RF_Seriale) \xE8 vuota o 0: le ricevute non si stampano.");
  if (platform::findPrinterNamed(scene.bridge.host.Printer, name).index)
    checkPrinterState(scene, findings, name);
  else
    addMissingPrinter(scene, findings, "La stampante \"" + name + "\" (RF_Stampante) non \xE8 installata",
                      slipLayoutOf(name) == nullptr ? WithoutPrinter::printsNothing : WithoutPrinter::printsOnCurrent);
}

void checkFile(const CheckScene& scene, Findings& findings) {
  const std::string& file = scene.bridge.settings.RF_File;
  if (file.empty())
    return findings.add(Code::slipFileFolderMissing, "Il file delle ricevute (RF_File) non \xE8 impostato.");
  const std::string folder = folderOf(file);
  if (!folder.empty() && !scene.inspection.look(folder).isFolder)
    findings.add(Code::slipFileFolderMissing, "La cartella " + folder + " di RF_File (" + file + ") non c'\xE8.");
  checkJobFile(scene, findings, file);
}

}  // namespace

void checkSlip(const CheckScene& scene, Findings& findings) {
  const Settings& settings = scene.bridge.settings;
  if (!settings.RF_Active) return findings.add(Code::off, "Spenta (RF_Active).");
  findings.add(Code::lookedAt, "Stampante " + shown(settings.RF_Stampante) + " (" +
                                   shown(textOf(scene, settings.RF_Seriale)) + "), file " + shown(settings.RF_File) +
                                   ".");
  checkPrinter(scene, findings);
  checkFile(scene, findings);
}

}  // namespace tellaxis
