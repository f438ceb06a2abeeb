// Tray icon: one toolkit icon, its events turned into the system's codes.
#include "ui/tray_icon_wx.h"

#include <wx/bmpbndl.h>

#include "ui/program_icon.h"
#include "ui/text.h"

namespace tellaxis::ui {

namespace {

constexpr int leftButtonDown = 513;
constexpr int leftButtonUp = 514;
constexpr int rightButtonUp = 517;

}  // namespace

bool TaskBarTray::available() { return wxTaskBarIcon::IsAvailable(); }

bool TaskBarTray::notify(platform::TrayAction action, const platform::TrayRecord& record) {
  if (action == platform::TrayAction::add) return add(record);
  if (!icon_) return false;
  icon_->RemoveIcon();
  icon_.reset();
  return true;
}

/// The icon is made even while there is no tray: it appears as soon as one comes up.
bool TaskBarTray::add(const platform::TrayRecord& record) {
  if (icon_) return false;
  icon_ = std::make_unique<wxTaskBarIcon>();
  // Panels report the press alone, so the release is told right after it.
  icon_->Bind(wxEVT_TASKBAR_LEFT_DOWN, [this](const wxTaskBarIconEvent&) {
    mouseMoved_(leftButtonDown);
    mouseMoved_(leftButtonUp);
  });
  icon_->Bind(wxEVT_TASKBAR_RIGHT_UP, [this](const wxTaskBarIconEvent&) { mouseMoved_(rightButtonUp); });
  return icon_->SetIcon(wxBitmapBundle::FromIconBundle(programIcons()), toWx(record.tip));
}

}  // namespace tellaxis::ui
