// Start-up: gates, job folders, point-of-sale folder, device setup, settings.
#include "core/startup.h"

#include <chrono>
#include <cmath>
#include <string_view>
#include <utility>

#include "core/ini/ini.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
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

/// How long a point-of-sale folder that does not answer is waited for, in seconds.
constexpr double longestWait = 60;
constexpr std::chrono::seconds betweenLooks{1};
constexpr double secondsOfADay = 86'400;

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

std::string pointOfSaleFolderOf(const Bridge& bridge) {
  const Value stored = LeggiImpostazione(bridge.host, "Orbis_Directory", Null{}, bridge.settings.settingsFile);
  std::string folder =
      IsVuoto(stored) ? std::string(defaultPointOfSaleFolder) : textOf(stored, bridge.host.locale.regional());
  if (folder.ends_with('\\') && folder.size() > 1) folder.pop_back();
  return folder;
}

void say(Bridge& bridge, const std::string& text) { bridge.host.dialogs.show(text, "Tellaxis", platform::Buttons::ok); }

/// After the log-on the network takes its time: what is taken over from a folder that does not answer yet would switch
/// the devices off.
void waitForPointOfSale(Bridge& bridge) {
  const std::string folder = pointOfSaleFolderOf(bridge);
  bool& unreachable = bridge.settings.pointOfSaleUnreachable;
  unreachable = bridge.host.files.isUnreachable(folder);
  if (!unreachable) return;
  say(bridge, "La cartella del punto cassa non risponde: " + folder + ". L'avvio la attende per un minuto al massimo.");
  platform::Clock& clock = bridge.host.clock;
  const double begun = clock.secondsSinceMidnight();
  const auto passed = [&] { return std::fmod(clock.secondsSinceMidnight() - begun + secondsOfADay, secondsOfADay); };
  while (unreachable && passed() < longestWait && !bridge.stopRequested()) {
    bridge.host.dialogs.processEvents();
    clock.sleep(betweenLooks);
    unreachable = bridge.host.files.isUnreachable(folder);
  }
  if (unreachable)
    say(bridge, "La cartella del punto cassa non risponde: " + folder +
                    ". Le impostazioni restano quelle dell'ultima volta. Quando risponde, riavviare Tellaxis.");
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
  waitForPointOfSale(bridge);
  storeStartValues(bridge, setup);
  for (const std::string_view role : stationRoles) bridge.form.Postazione.List.emplace_back(role);
  bridge.form.Postazione.Text = bridge.options.role;
  CaricaImpostazioni(bridge);
  setup.IconaAggiungi();
}

void PosizioneOrbis51(Bridge& bridge) {
  Settings& settings = bridge.settings;
  const std::string folder = pointOfSaleFolderOf(bridge);
  bridge.form.Orbis51Dir.Text = folder;
  ScriviIni(bridge.host, rawSection, "Orbis_Directory", folder, settings.settingsFile);
  setPointOfSaleFolder(settings, folder);
  if (settings.pointOfSaleUnreachable) return;
  const Value runtime =
      LeggiImpostazione(bridge.host, "RT_Access", std::string(defaultRuntime), settings.pointOfSaleSettingsFile);
  ScriviImpostazione(bridge.host, "RunTimeOrbis51", runtime, settings.settingsFile);
}

}  // namespace tellaxis
