// Tray icon: the record handed to the desktop, and what its events do.
#include "core/tray_icon.h"

#include <cmath>

#include "platform/tray.h"

namespace tellaxis {

namespace {

constexpr std::uint32_t iconIdentifier = 1;
constexpr std::uint32_t messageIconAndTip = 7;
constexpr std::uint32_t mouseMoveMessage = 512;
constexpr std::uint32_t noMessage = 1;
constexpr double leftButtonUpMessage = 514;
constexpr std::size_t longestTip = 63;

platform::TrayRecord recordOf(const Window& form, std::uint32_t callbackMessage, const std::string& tip) {
  return {.window = form.hWnd(),
          .identifier = iconIdentifier,
          .flags = messageIconAndTip,
          .callbackMessage = callbackMessage,
          .icon = form.Icon(),
          .tip = tip.substr(0, longestTip)};
}

}  // namespace

void IconaAggiungi(Bridge& bridge, TrayIcon& icon, const Window& form) {
  bridge.host.tray.notify(platform::TrayAction::add, recordOf(form, mouseMoveMessage, form.Caption()));
  icon.shown = yes;
}

void IconaRimuovi(Bridge& bridge, TrayIcon& icon, const Window& form) {
  bridge.host.tray.notify(platform::TrayAction::remove, recordOf(form, noMessage, ""));
  icon.shown = no;
}

void cmdNascondi_Click(Bridge& bridge, TrayIcon& icon, Window& form) {
  if (bridge.host.tray.available())
    form.Hide();
  else
    form.Minimize();
  IconaAggiungi(bridge, icon, form);
}

void Form_MouseMove(Window& form, double x, ScaleMode scale, double twipsPerPixelX) {
  const double pixels = scale == ScaleMode::pixels ? x : x / twipsPerPixelX;
  if (std::nearbyint(pixels) == leftButtonUpMessage) form.Show();
}

}  // namespace tellaxis
