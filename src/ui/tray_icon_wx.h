// Tray icon: the notification area through the toolkit, where the system has no call of its own for it.
#pragma once

#include <wx/icon.h>
#include <wx/taskbar.h>

#include <functional>
#include <memory>

#include "platform/tray.h"

namespace tellaxis::ui {

class TaskBarTray : public platform::Tray {
 public:
  /// `mouseMoved` gets what happens to the icon as the system's own codes, in place of a horizontal coordinate.
  explicit TaskBarTray(std::function<void(int code)> mouseMoved) : mouseMoved_(std::move(mouseMoved)) {}

  bool available() override;
  bool notify(platform::TrayAction action, const platform::TrayRecord& record) override;

 private:
  bool add(const platform::TrayRecord& record);

  std::function<void(int)> mouseMoved_;
  std::unique_ptr<wxTaskBarIcon> icon_;
};

}  // namespace tellaxis::ui
