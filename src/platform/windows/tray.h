// Tray of Windows: the notification area by the shell's narrow-character operation.
#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <optional>

#include "platform/trace.h"
#include "platform/tray.h"

namespace tellaxis::platform {

/// The task bar that there is: its window, and how many have announced themselves.
struct TaskBar {
  HWND window = nullptr;
  unsigned count = 0;

  bool operator==(const TaskBar&) const = default;
};

/// The shell's side of it; a test brings its own.
class Shell {
 public:
  virtual ~Shell() = default;
  virtual bool notifyIcon(DWORD action, NOTIFYICONDATAA& data);
  virtual TaskBar taskBar();
  virtual DWORD milliseconds();
};

class WindowsTray : public Tray {
 public:
  explicit WindowsTray(Trace& trace, Shell* shell = nullptr)
      : trace_(trace), shell_(shell == nullptr ? own_ : *shell) {}

  bool available() override;
  bool notify(TrayAction action, const TrayRecord& record) override;
  void keep() override;

 private:
  Trace& trace_;
  Shell own_;
  Shell& shell_;
  std::optional<TrayRecord> wanted_;  ///< the icon that should be there
  bool there_ = false;
  TaskBar on_;             ///< where it was put
  DWORD lastAttempt_ = 0;  ///< of `keep`
};

}  // namespace tellaxis::platform
