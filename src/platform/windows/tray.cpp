// Tray of Windows: the record field by field, and adding it again until it is there.
#include "platform/windows/tray.h"

#include <algorithm>
#include <cstddef>

#include "platform/windows/kernel/native.h"
#include "platform/windows/kernel/session_window.h"

namespace tellaxis::platform {

namespace {

/// The tip's field of the first form of the record.
constexpr std::size_t tipSize = 64;

#ifndef _WIN64
static_assert(offsetof(NOTIFYICONDATAA, szTip) + tipSize == 88);
#endif

/// A busy shell keeps each attempt waiting for seconds.
constexpr DWORD betweenAttempts = 2'000;

NOTIFYICONDATAA native(const TrayRecord& record) {
  NOTIFYICONDATAA data = {};
  data.cbSize = record.size;
  data.hWnd = reinterpret_cast<HWND>(record.window);
  data.uID = record.identifier;
  data.uFlags = record.flags;
  data.uCallbackMessage = record.callbackMessage;
  data.hIcon = reinterpret_cast<HICON>(record.icon);
  record.tip.copy(data.szTip, tipSize - 1);
  return data;
}

}  // namespace

bool Shell::notifyIcon(DWORD action, NOTIFYICONDATAA& data) { return Shell_NotifyIconA(action, &data) != FALSE; }

TaskBar Shell::taskBar() { return {FindWindowA("Shell_TrayWnd", nullptr), taskBarsCreated()}; }

DWORD Shell::milliseconds() { return GetTickCount(); }

bool WindowsTray::available() { return shell_.taskBar().window != nullptr; }

bool WindowsTray::notify(TrayAction action, const TrayRecord& record) {
  NOTIFYICONDATAA data = native(record);
  const bool done = shell_.notifyIcon(static_cast<DWORD>(action), data);
  const bool adding = action == TrayAction::add;
  wanted_ = adding ? std::optional(record) : std::nullopt;
  there_ = adding && done;
  on_ = shell_.taskBar();
  return done || failed(trace_, "Shell_NotifyIcon", record.tip);
}

void WindowsTray::keep() {
  if (!wanted_) return;
  const TaskBar present = shell_.taskBar();
  if (there_ && present == on_) return;
  if (shell_.milliseconds() - lastAttempt_ < betweenAttempts) return;
  lastAttempt_ = shell_.milliseconds();
  NOTIFYICONDATAA data = native(*wanted_);
  // Adding fails where the icon is there after all: then it can be changed.
  there_ = shell_.notifyIcon(NIM_ADD, data) || shell_.notifyIcon(NIM_MODIFY, data);
  on_ = present;
}

}  // namespace tellaxis::platform
