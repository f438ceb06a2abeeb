// Line: its number, its settings, and who has it.
#include "check/line.h"

#include "check/words.h"
#include "platform/locale.h"
#include "platform/serial/line_settings.h"

namespace tellaxis {

namespace {

bool isOurBridge(const CheckScene& scene, const std::string& holder) {
  const auto process = scene.servingProcess.value_or(0);
  return process != 0 && holder.ends_with("(" + std::to_string(process) + ")");
}

void checkPort(const CheckScene& scene, Findings& findings, std::string_view key, int number) {
  const platform::PortLook port = scene.inspection.port(number, !scene.servingProcess);
  std::string name = "COM" + std::to_string(number);
  if (port.device != name && !port.device.empty()) name += " (" + port.device + ")";
  switch (port.access) {
    case platform::PortAccess::free: return;
    case platform::PortAccess::missing:
      return findings.add(Code::portMissing, "La porta " + name + " di " + std::string(key) + " non c'\xE8.");
    case platform::PortAccess::refused:
      return findings.add(Code::portRefused, "La porta " + name + " c'\xE8, ma questo utente non la pu\xF2 aprire.");
    case platform::PortAccess::held: break;
  }
  if (isOurBridge(scene, port.heldBy)) return;
  const std::string holder = port.heldBy.empty() ? "da un altro programma" : "da " + port.heldBy;
  findings.add(Code::portBusy, "La porta " + name + " \xE8 tenuta aperta " + holder + ".");
}

}  // namespace

std::string lineText(const CheckScene& scene, const LineKeys& keys) {
  return "COM" + textOf(scene, keys.port) + " (" + (keys.settings.empty() ? "linea non descritta" : keys.settings) +
         ")";
}

void checkLine(const CheckScene& scene, Findings& findings, const LineKeys& keys) {
  const auto number = integerFrom(keys.port, scene.bridge.host.locale.regional());
  if (number && *number > 0)
    checkPort(scene, findings, keys.portKey, *number);
  else
    findings.add(Code::portMissing,
                 std::string(keys.portKey) + " non \xE8 un numero di porta: \"" + textOf(scene, keys.port) + "\".");
  if (!platform::lineSettingsFromText(keys.settings))
    findings.add(Code::portSettings,
                 std::string(keys.settingsKey) + " non \xE8 una descrizione di linea: \"" + keys.settings + "\".");
}

}  // namespace tellaxis
