// Tray: nothing takes an icon.
#include "platform/console/tray.h"

namespace tellaxis::platform {

bool NoTray::available() { return false; }

bool NoTray::notify(TrayAction action, const TrayRecord&) {
  trace_.failed("notify", action == TrayAction::add ? "add" : "remove", "nessuna area di notifica");
  return false;
}

}  // namespace tellaxis::platform
