// Display: its family, its job file and its line.
#include "check/devices/devices.h"
#include "check/line.h"
#include "check/waiting_jobs.h"
#include "check/words.h"
#include "display/families.h"

namespace tellaxis {

namespace {

void checkFile(const CheckScene& scene, Findings& findings) {
  const std::string& file = scene.bridge.settings.Display_File;
  if (file.empty())
    return findings.add(Code::displayFileFolderMissing, "Il file del display (Display_File) non \xE8 impostato.");
  const std::string folder = folderOf(file);
  if (!folder.empty() && !scene.inspection.look(folder).isFolder)
    findings.add(Code::displayFileFolderMissing,
                 "La cartella " + folder + " di Display_File (" + file + ") non c'\xE8.");
  checkJobFile(scene, findings, file);
}

}  // namespace

void checkDisplay(const CheckScene& scene, Findings& findings) {
  const Settings& settings = scene.bridge.settings;
  if (!settings.Display_Active) return findings.add(Code::off, "Spento (Display_Active).");
  const LineKeys line{.portKey = "Display_COM",
                      .port = settings.Display_COM,
                      .settingsKey = "Display_Parametri",
                      .settings = settings.Display_Parametri};
  findings.add(Code::lookedAt, "Tipo " + shown(settings.Display_Type) + " su " + lineText(scene, line) + ", file " +
                                   settings.Display_File + ".");
  if (displayFamilyNamed(settings.Display_Type) == nullptr)
    findings.add(Code::familyUnknown,
                 "Il tipo di display \"" + settings.Display_Type + "\" (Display_Type) non si conosce.");
  checkFile(scene, findings);
  checkLine(scene, findings, line);
  if (settings.Display_Delay > 0 && !scene.bridge.options.midnight)
    findings.add(
        Code::midnightHang,
        "Un messaggio a cavallo della mezzanotte pu\xF2 fermare il ponte (Display_Delay, centesimi di secondo: " +
            std::to_string(settings.Display_Delay) + ").");
}

}  // namespace tellaxis
