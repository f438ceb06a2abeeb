// Take-over: raw copies of keys, so that empty ones are stored as empty.
#include "connect/take_over.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/ini/ini.h"

namespace tellaxis {

namespace {

struct CopiedKey {
  std::string_view from;  ///< in the point-of-sale settings
  std::string_view to;    ///< in our own
};

using Account = std::array<CopiedKey, 3>;

constexpr Account ftpAccount = {{
    {"Si_FTP_ptp", "FTP_Indirizzo"},
    {"Si_NomeUT_ptp", "FTP_User"},
    {"Si_Psw_ptp", "FTP_Pw"},
}};

constexpr Account dialUpAccount = {{
    {"GG_CONNESSIONE", "WEB_Connection"},
    {"GG_ACCOUNT", "WEB_User"},
    {"GG_PSW", "WEB_Pw"},
}};

void write(Bridge& bridge, std::string_view key, std::string_view value) {
  ScriviIni(bridge.host, rawSection, key, value, bridge.settings.settingsFile);
}

/// Reads all of the account before the first key is written; true when no part of it is empty.
bool copy(Bridge& bridge, const Account& account) {
  std::array<std::string, std::tuple_size_v<Account>> values;
  std::ranges::transform(account, values.begin(), [&](const CopiedKey& key) {
    return LeggiIni(bridge.host, rawSection, key.from, std::string(), bridge.settings.pointOfSaleSettingsFile);
  });
  for (std::size_t i = 0; i < account.size(); ++i) write(bridge, account[i].to, values[i]);
  return std::ranges::none_of(values, &std::string::empty);
}

}  // namespace

void FTP_StartUP_Orbis(Bridge& bridge) {
  readOrbisSetting(bridge);
  if (bridge.settings.takesOver()) copy(bridge, ftpAccount);
}

void WEB_StartUP_Orbis(Bridge& bridge) {
  readOrbisSetting(bridge);
  if (!bridge.settings.takesOver()) return;
  const bool complete = copy(bridge, dialUpAccount);
  write(bridge, "WEB_chkDial", complete ? "-1" : "0");
}

}  // namespace tellaxis
