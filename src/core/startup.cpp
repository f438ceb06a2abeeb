// Start-up: gates, job folders, point-of-sale folder, device setup, settings.
#include "core/startup.h"

#include <string_view>
#include <utility>

#include "core/ini/ini.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "platform/profiles.h"

namespace tellaxis {

namespace {

constexpr std::string_view gateKeys[] = {"MF_Vuoto", "RF_Vuoto", "Cort_Vuoto"};
struct JobFolder {
  std::string_view name;
  bool jobsWaitHere;  ///< as against those that are under way
};

constexpr JobFolder jobFolders[] = {{"\\CortOrbis", true}, {"\\CortIN", false}, {"\\Orbis", true}, {"\\IN", false}};
constexpr std::string_view stationRoles[] = {"CLIENT", "SERVER"};
constexpr std::string_view defaultPointOfSaleFolder = "C:\\Meridia";
constexpr std::string_view defaultRuntime = "C:\\Programmi\\Access 97 Runtime\\msaccess.exe";

void prepareJobFolders(Bridge& bridge) {
  for (const JobFolder& row : jobFolders) {
    const std::string folder = bridge.settings.mainFolder + std::string(row.name);
    if (!bridge.host.files.folderExists(folder))
      bridge.host.files.createFolder(folder);
    else if (!row.jobsWaitHere || !bridge.options.keepWaiting)
      bridge.host.files.removeAll(folder);
  }
}

void setUpDevices(DeviceSetup& setup) {
  setup.Display_StartUP_Valori();
  setup.Display_StartUP_Orbis();
  setup.MF_StartUP_Valori();
  setup.MF_StartUP_Orbis();
  setup.FTP_StartUP_Orbis();
  setup.WEB_StartUP_Orbis();
  setup.RF_StartUP_Valori();
  setup.Cort_StartUP_Valori();
  setup.Cort_StartUP_Orbis();
}

/// All that start-up stores, flushed once: should the program be killed before, the next start stores the same.
void storeStartValues(Bridge& bridge, DeviceSetup& setup) {
  const platform::ProfileBatch batch(bridge.host.profiles);
  for (const std::string_view key : gateKeys) ScriviImpostazione(bridge.host, key, yes, bridge.settings.settingsFile);
  prepareJobFolders(bridge);
  readOrbisSetting(bridge);
  PosizioneOrbis51(bridge);
  setUpDevices(setup);
}

}  // namespace

void Form_Load(Bridge& bridge, DeviceSetup& setup, std::string mainFolder) {
  setMainFolder(bridge.settings, std::move(mainFolder));
  storeStartValues(bridge, setup);
  for (const std::string_view role : stationRoles) bridge.form.Postazione.List.emplace_back(role);
  CaricaImpostazioni(bridge);
  setup.IconaAggiungi();
}

void PosizioneOrbis51(Bridge& bridge) {
  Settings& settings = bridge.settings;
  const auto& regional = bridge.host.locale.regional();
  const Value stored = LeggiImpostazione(bridge.host, "Orbis_Directory", Null{}, settings.settingsFile);
  std::string folder = IsVuoto(stored) ? std::string(defaultPointOfSaleFolder) : textOf(stored, regional);
  if (folder.ends_with('\\') && folder.size() > 1) folder.pop_back();
  bridge.form.Orbis51Dir.Text = folder;
  ScriviIni(bridge.host, rawSection, "Orbis_Directory", folder, settings.settingsFile);
  setPointOfSaleFolder(settings, folder);
  const Value runtime =
      LeggiImpostazione(bridge.host, "RT_Access", std::string(defaultRuntime), settings.pointOfSaleSettingsFile);
  ScriviImpostazione(bridge.host, "RunTimeOrbis51", runtime, settings.settingsFile);
}

}  // namespace tellaxis
