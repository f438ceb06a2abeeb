// Gate: what is no truth value is open.
#include "core/gate.h"

#include "core/ini/ini.h"
#include "platform/locale.h"

namespace tellaxis {

bool gateIsOpen(const Bridge& bridge, std::string_view gateKey) {
  const Value gate = LeggiImpostazione(bridge.host, gateKey, yes, bridge.settings.settingsFile);
  return truthFrom(gate, bridge.host.locale.regional()).value_or(true);
}

}  // namespace tellaxis
