// Settings: load and save, both by walking the catalogue.
#include "core/settings.h"

#include <utility>

#include "core/bridge.h"
#include "core/catalogue.h"
#include "core/ini/ini.h"
#include "platform/locale.h"
#include "platform/trace.h"
#include "text/overloaded.h"
#include "text/trimmed.h"

namespace tellaxis {

namespace {

Value valueOf(const DefaultValue& value) {
  return std::visit(
      Overloaded{[](Null) -> Value { return Null{}; }, [](std::string_view text) -> Value { return std::string(text); },
                 [](std::int16_t number) -> Value { return number; }},
      value);
}

/// A conversion that may have failed: its result is assigned, or what was there stays.
template <typename Target, typename Result>
void assign(Bridge& bridge, const Setting& row, Target& target, std::optional<Result> result, const Value& value) {
  if (result)
    target = *result;
  else
    bridge.host.trace.failed("lettura impostazione", row.loadedAs,
                             "valore non valido: " + textOf(value, bridge.host.locale.regional()));
}

Value read(Bridge& bridge, const Setting& row) {
  const std::string& file = bridge.settings.settingsFile;
  if (row.read == ReadKind::raw)
    return LeggiIni(bridge.host, rawSection, row.loadedAs, valueOf(row.defaultValue), file);
  return LeggiImpostazione(bridge.host, row.loadedAs, valueOf(row.defaultValue), file);
}

void store(Bridge& bridge, const Setting& row, const Value& value) {
  Settings& settings = bridge.settings;
  const auto& regional = bridge.host.locale.regional();
  std::visit(
      Overloaded{[&](bool Settings::*flag) { assign(bridge, row, settings.*flag, truthFrom(value, regional), value); },
                 [&](std::int16_t Settings::*number) {
                   assign(bridge, row, settings.*number, integerFrom(value, regional), value);
                 },
                 [&](std::string Settings::*text) { settings.*text = textOf(value, regional); },
                 [&](Value Settings::*variant) { settings.*variant = value; }},
      row.setting);
}

Value loaded(const Bridge& bridge, const Setting& row) {
  const Settings& settings = bridge.settings;
  return std::visit(Overloaded{[&](bool Settings::*flag) -> Value { return settings.*flag ? yes : no; },
                               [&](auto member) -> Value { return settings.*member; }},
                    row.setting);
}

void show(Bridge& bridge, const Setting& row) {
  const auto& regional = bridge.host.locale.regional();
  const Value value = loaded(bridge, row);
  const auto showText = [&](auto& control) {
    const std::string text = textOf(value, regional);
    if (row.notShown.empty() || text != row.notShown) control.Text = text;
  };
  std::visit(Overloaded{[](std::monostate) {},
                        [&](CheckBox MainForm::*box) {
                          if (const auto truth = truthFrom(value, regional)) (bridge.form.*box).Value = *truth ? 1 : 0;
                        },
                        [&](auto textControl) { showText(bridge.form.*textControl); }},
             row.control);
}

/// Reads one row without showing it.
void loadAlone(Bridge& bridge, std::string_view key) {
  for (const Setting& row : catalogue())
    if (row.loadedAs == key) store(bridge, row, read(bridge, row));
}

/// Reads the rows of a group, then shows them.
void loadGroup(Bridge& bridge, Group group) {
  for (const Setting& row : catalogue())
    if (row.group == group) store(bridge, row, read(bridge, row));
  for (const Setting& row : catalogue())
    if (row.group == group) show(bridge, row);
}

void setPort(Bridge& bridge, SerialControl& port, const Value& number, std::string_view lineSettings) {
  if (const auto commPort = integerFrom(number, bridge.host.locale.regional()))
    port.CommPort(*commPort);
  else
    bridge.host.trace.failed("CommPort", textOf(number, bridge.host.locale.regional()), "non \xE8 un numero di porta");
  port.Settings(lineSettings);
}

void loadDisplay(Bridge& bridge) {
  Settings& settings = bridge.settings;
  const Value active = LeggiImpostazione(bridge.host, "Display_Active", no, settings.settingsFile);
  settings.Display_Active = numberFrom(active, bridge.host.locale.regional()) != 0;
  bridge.form.DLY_Active.Value = settings.Display_Active ? 1 : 0;
  if (!settings.Display_Active) return;
  for (const Setting& row : catalogue())
    if (row.group == Group::display && row.loadedAs != "Display_Active") store(bridge, row, read(bridge, row));
  for (const Setting& row : catalogue())
    if (row.group == Group::display) show(bridge, row);
  setPort(bridge, bridge.form.MSComm1, settings.Display_COM, settings.Display_Parametri);
}

std::string textIn(const MainForm& form, const ControlMember& control) {
  return std::visit(Overloaded{[](std::monostate) { return std::string(); },
                               [&](CheckBox MainForm::*box) { return std::to_string((form.*box).Value); },
                               [&](auto textControl) { return (form.*textControl).Text; }},
                    control);
}

bool isConfigured(const MainForm& form, const OnlyIfConfigured& condition) {
  const std::string text = textIn(form, condition.control);
  return condition.notPresent.empty() ? !trimmed(text).empty() : text != condition.notPresent;
}

Value valueToSave(const MainForm& form, const Setting& row) {
  if (std::holds_alternative<std::monostate>(row.active.control)) return textIn(form, row.control);
  const int checked = (form.*std::get<CheckBox MainForm::*>(row.control)).Value != 0 ? yes : no;
  const int configured = isConfigured(form, row.active) ? yes : no;
  return static_cast<std::int16_t>(checked & configured);
}

void save(Bridge& bridge, const Setting& row) {
  const Value value = valueToSave(bridge.form, row);
  const std::string& file = bridge.settings.settingsFile;
  if (row.write == WriteKind::raw)
    ScriviIni(bridge.host, rawSection, row.savedAs, textOf(value, bridge.host.locale.regional()), file);
  else
    ScriviImpostazione(bridge.host, row.savedAs, value, file);
}

}  // namespace

void setMainFolder(Settings& settings, std::string mainFolder) {
  settings.mainFolder = std::move(mainFolder);
  settings.settingsFile = settings.mainFolder + "\\_Tellaxis.ini";
}

void setPointOfSaleFolder(Settings& settings, std::string folder) {
  settings.pointOfSaleFolder = std::move(folder);
  settings.pointOfSaleSettingsFile = settings.pointOfSaleFolder + "\\_Local.ini";
}

void readOrbisSetting(Bridge& bridge) { loadAlone(bridge, "Orbis_Setting"); }

void loadPointOfSaleFolder(Bridge& bridge) {
  loadAlone(bridge, "Orbis_Directory");
  setPointOfSaleFolder(bridge.settings, bridge.settings.pointOfSaleFolder);
}

void CaricaImpostazioni(Bridge& bridge) {
  loadGroup(bridge, Group::generale);
  setPointOfSaleFolder(bridge.settings, bridge.settings.pointOfSaleFolder);
  loadDisplay(bridge);
  loadGroup(bridge, Group::misuratoreFiscale);
  loadGroup(bridge, Group::ricevutaFiscale);
  loadGroup(bridge, Group::preconto);
  if (bridge.settings.Cort_Printer == "DPT-282")
    setPort(bridge, bridge.form.COMPreconto, bridge.settings.Cort_Com, bridge.settings.Cort_Sett);
}

void cmdSalva_Click(Bridge& bridge) {
  for (const Setting* row : savedSettings()) save(bridge, *row);
  CaricaImpostazioni(bridge);
}

}  // namespace tellaxis
