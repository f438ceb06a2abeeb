// Dial-up: whether the connection's account is complete.
#include <vector>

#include "check/devices/devices.h"
#include "check/words.h"
#include "core/ini/ini.h"
#include "platform/locale.h"

namespace tellaxis {

namespace {

constexpr std::string_view accountKeys[] = {"Int_Indirizzo", "Ind_User", "Ind_Pw"};

}  // namespace

void checkDialUp(const CheckScene& scene, Findings& findings) {
  const auto dials = truthFrom(readKey(scene, "WEB_chkDial"), scene.bridge.host.locale.regional());
  if (!dials.value_or(false)) return findings.add(Code::off, "Spenta (WEB_chkDial).");
  findings.add(Code::lookedAt,
               "Connessione " + readKey(scene, "Int_Indirizzo") + ", utente " + readKey(scene, "Ind_User") + ".");
  std::vector<std::string> missing;
  for (const std::string_view key : accountKeys)
    if (IsVuoto(readKey(scene, key))) missing.emplace_back(key);
  if (!missing.empty())
    findings.add(Code::dialUpIncomplete, "WEB_chkDial \xE8 acceso e manca: " + listed(missing) + ".");
}

}  // namespace tellaxis
