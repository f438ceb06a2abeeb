// General: the main folder, the settings file, the disk, the point-of-sale folder, the metrics and the copy that serves
// them.
#include "check/devices/devices.h"
#include "check/words.h"
#include "core/option_path.h"

namespace tellaxis {

namespace {

constexpr std::uint64_t megabyte = 1024 * 1024;
constexpr std::uint64_t leastRoom = 100 * megabyte;

void checkCopy(const CheckScene& scene, Findings& findings) {
  if (!scene.servingProcess) return findings.add(Code::notRunning, "Il ponte non \xE8 in funzione su questa cartella.");
  const std::uint32_t process = *scene.servingProcess;
  findings.add(Code::secondCopy, "Il ponte \xE8 in funzione (processo " +
                                     (process == 0 ? std::string("di numero non noto") : std::to_string(process)) +
                                     ").");
}

void checkSettingsFile(const CheckScene& scene, Findings& findings) {
  const std::string& file = scene.bridge.settings.settingsFile;
  const platform::PathLook look = scene.inspection.look(file);
  if (!look.isFile)
    return findings.add(Code::settingsUnreadable, "Il file delle impostazioni " + file + " non c'\xE8.");
  if (!look.mayRead)
    findings.add(Code::settingsUnreadable, "Il file delle impostazioni " + file + " non si pu\xF2 leggere.");
  if (!look.mayWrite)
    findings.add(Code::settingsNotWritable, "Il file delle impostazioni " + file + " non si pu\xF2 scrivere.");
}

void checkPointOfSale(const CheckScene& scene, Findings& findings) {
  const Settings& settings = scene.bridge.settings;
  if (!scene.inspection.look(settings.pointOfSaleFolder).isFolder)
    findings.add(Code::posFolderMissing,
                 "La cartella dell'applicativo " + settings.pointOfSaleFolder + " (Orbis_Directory) non c'\xE8.");
  else if (!scene.inspection.look(settings.pointOfSaleSettingsFile).isFile)
    findings.add(Code::posFolderMissing,
                 "Il file dell'applicativo " + settings.pointOfSaleSettingsFile + " non c'\xE8.");
}

/// To whoever watches the desk, a file that is not written looks like a desk that is switched off.
void checkMetrics(const CheckScene& scene, Findings& findings) {
  const std::string file = optionPath(scene.bridge.options.metrics, scene.bridge.settings.mainFolder);
  if (file.empty()) return;
  const std::string folder = folderOf(file);
  const platform::PathLook look = scene.inspection.look(folder);
  if (!look.isFolder)
    findings.add(Code::metricsFolderMissing, "La cartella " + folder + " del file dei contatori (metrics) non c'\xE8.");
  else if (!look.mayWrite)
    findings.add(Code::metricsFolderNotWritable,
                 "Nella cartella " + folder + " del file dei contatori (metrics) non si pu\xF2 scrivere.");
}

}  // namespace

void checkGeneral(const CheckScene& scene, Findings& findings) {
  const Settings& settings = scene.bridge.settings;
  const auto room = scene.inspection.freeBytes(settings.mainFolder);
  findings.add(Code::lookedAt,
               "Cartella " + settings.mainFolder + ", impostazioni " + settings.settingsFile +
                   ", cartella dell'applicativo " + settings.pointOfSaleFolder +
                   (room ? ", spazio libero " + std::to_string(*room / megabyte) + " MB" : std::string()) + ".");
  checkCopy(scene, findings);
  checkSettingsFile(scene, findings);
  if (!scene.inspection.look(settings.mainFolder).mayWrite)
    findings.add(Code::mainFolderNotWritable,
                 "Nella cartella " + settings.mainFolder + " non si pu\xF2 scrivere: i lavori non vengono presi.");
  if (room && *room < leastRoom)
    findings.add(Code::diskNearlyFull,
                 "Sul disco di " + settings.mainFolder + " restano " + std::to_string(*room / megabyte) + " MB.");
  checkPointOfSale(scene, findings);
  checkMetrics(scene, findings);
}

}  // namespace tellaxis
