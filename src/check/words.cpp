// Words: units, lists and the parts of paths.
#include "check/words.h"

#include "core/ini/ini.h"
#include "platform/locale.h"

namespace tellaxis {

namespace {

struct Unit {
  std::chrono::seconds length;
  std::string_view name;
};

constexpr Unit units[] = {
    {std::chrono::hours(24), " giorni"}, {std::chrono::hours(1), " ore"}, {std::chrono::minutes(1), " minuti"}};

constexpr std::size_t longestList = 8;

}  // namespace

std::string durationText(std::chrono::seconds duration) {
  for (const Unit& unit : units)
    if (duration >= 2 * unit.length) return std::to_string(duration / unit.length).append(unit.name);
  return counted(static_cast<std::size_t>(duration.count()), "secondo", "secondi");
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count).append(" ").append(count == 1 ? one : many);
}

std::string listed(const std::vector<std::string>& words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i == longestList) return text + " e altre " + std::to_string(words.size() - i);
    text.append(i == 0 ? "" : ", ").append(words[i]);
  }
  return text;
}

std::string shown(std::string_view setting) { return std::string(setting.empty() ? "(vuoto)" : setting); }

std::string folderOf(std::string_view path) {
  const std::size_t separator = path.find_last_of("\\/");
  if (separator == std::string_view::npos) return {};
  const std::string_view folder = path.substr(0, separator);
  return std::string(folder.empty() || folder.ends_with(':') ? path.substr(0, separator + 1) : folder);
}

std::string textOf(const CheckScene& scene, const Value& value) {
  return textOf(value, scene.bridge.host.locale.regional());
}

std::string readKey(const CheckScene& scene, std::string_view key) {
  return LeggiIni(scene.bridge.host, rawSection, key, Null{}, scene.bridge.settings.settingsFile);
}

}  // namespace tellaxis
