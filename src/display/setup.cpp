// Setup: list entries by their place in the table, settings by the point-of-sale code.
#include "display/setup.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "core/ini/ini.h"
#include "display/families.h"

namespace tellaxis {

namespace {

constexpr int lastPort = 16;
constexpr std::int16_t defaultDelay = 5;

}  // namespace

void Display_StartUP_Valori(Bridge& bridge) {
  auto& types = bridge.form.DLY_Type.List;
  for (int position = 1; position <= static_cast<int>(std::size(displayFamilies)); ++position) {
    const auto* family = std::ranges::find(displayFamilies, position, &DisplayFamily::listPosition);
    if (family != std::end(displayFamilies)) types.emplace_back(family->name);
  }
  types.emplace_back(noDisplay);
  for (int port = 1; port <= lastPort; ++port) bridge.form.DLY_com.List.push_back(std::to_string(port));
}

void Display_StartUP_Orbis(Bridge& bridge) {
  const Settings& settings = bridge.settings;
  if (!settings.takesOver()) return;
  platform::Host& host = bridge.host;
  const auto write = [&](std::string_view key, const Value& value) {
    ScriviImpostazione(host, key, value, settings.settingsFile);
  };
  const auto read = [&](std::string_view key) { return LeggiValore(host, key, settings.pointOfSaleSettingsFile); };

  const std::string code =
      LeggiIni(host, rawSection, "Banco_DisplayNoNd", std::string("0"), settings.pointOfSaleSettingsFile);
  const DisplayFamily* family = displayFamilyOfCode(code);
  write("Display_Active", family != nullptr ? yes : no);
  write("Display_Type", std::string(family != nullptr ? family->name : noDisplay));
  write("Display_COM", family != nullptr ? read("Dis_PortaCom") : Null{});
  write("Display_Parametri", family != nullptr ? read("Dis_Parametri") : Null{});
  write("Display_Delay", LeggiImpostazione(host, "Display_Delay", defaultDelay, settings.settingsFile));
}

}  // namespace tellaxis
