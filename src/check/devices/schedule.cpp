// Schedule: the timetable's entries, each of which a minute of the week must reach.
#include <algorithm>
#include <string_view>
#include <vector>

#include "check/devices/devices.h"
#include "check/words.h"
#include "core/ini/ini.h"
#include "platform/locale.h"
#include "platform/profiles.h"
#include "text/letter_case.h"

namespace tellaxis {

namespace {

/// Of the list of keys, the most that the system gives at once.
constexpr std::size_t mostKeys = 32'767;
constexpr std::size_t dayLength = 3;

std::vector<std::string> keysOf(const CheckScene& scene, const std::string& file) {
  std::string names = scene.bridge.host.profiles.read(typedSection, std::nullopt, "", mostKeys, file);
  names += '\0';
  std::vector<std::string> keys;
  for (std::string_view rest = names; !rest.empty(); rest.remove_prefix(rest.find('\0') + 1))
    if (rest.front() != '\0') keys.emplace_back(rest.substr(0, rest.find('\0')));
  return keys;
}

bool isDay(const CheckScene& scene, std::string_view day) {
  return std::ranges::any_of(scene.bridge.host.locale.regional().weekdays, [&](const std::string& weekday) {
    return equalIgnoringAsciiCase(upperCase(std::string_view(weekday).substr(0, dayLength)), day);
  });
}

/// Four digits, "0000" to "2359".
bool isTime(std::string_view time) {
  constexpr std::string_view digits = "0123456789";
  return time.size() == 4 && time.find_first_not_of(digits) == std::string_view::npos && time.substr(0, 2) < "24" &&
         time.substr(2) < "60";
}

bool isReached(const CheckScene& scene, std::string_view key) {
  return key.size() > dayLength && key[dayLength] == '#' && isDay(scene, key.substr(0, dayLength)) &&
         isTime(key.substr(dayLength + 1));
}

/// A code, and each of its two fields ended.
bool isWellFormed(std::string_view entry) { return !entry.starts_with('#') && std::ranges::count(entry, '#') >= 2; }

/// What is wrong with an entry, as the end of a sentence; empty where nothing is.
std::string_view faultOf(const CheckScene& scene, std::string_view key, std::string_view entry) {
  if (!isReached(scene, key)) return " non cade in nessun giorno e minuto.";
  return isWellFormed(entry) ? "" : " non ha un codice e un'etichetta chiusi da #.";
}

}  // namespace

void checkSchedule(const CheckScene& scene, Findings& findings) {
  const std::string file = scene.bridge.settings.pointOfSaleFolder + "\\_Schedulatore.ini";
  const platform::PathLook look = scene.inspection.look(file);
  if (!look.isFile) return findings.add(Code::off, "Nessun calendario (" + file + ").");
  std::vector<std::string> wrong;
  std::size_t entries = 0;
  for (const std::string& key : look.mayRead ? keysOf(scene, file) : std::vector<std::string>()) {
    const std::string entry = LeggiIni(scene.bridge.host, typedSection, key, Null{}, file);
    // What has no "#" at all is a key of another purpose.
    if (key.find('#') == std::string::npos && entry.find('#') == std::string::npos) continue;
    ++entries;
    const std::string_view fault = faultOf(scene, key, entry);
    if (!fault.empty()) wrong.push_back(std::string("La voce ").append(key).append("=").append(entry).append(fault));
  }
  findings.add(Code::lookedAt, "Calendario " + file + ", " + counted(entries, "voce", "voci") + ".");
  if (!look.mayRead) findings.add(Code::scheduleUnreadable, "Il calendario " + file + " non si pu\xF2 leggere.");
  for (std::string& text : wrong) findings.add(Code::scheduleEntry, std::move(text));
}

}  // namespace tellaxis
