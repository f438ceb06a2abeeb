// Tray of Windows: Shell_NotifyIconA with the record that every version of the shell knows.
#include "platform/windows/tray.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <algorithm>
#include <cstddef>

#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

/// The tip's field of the first form of the record.
constexpr std::size_t tipSize = 64;

#ifndef _WIN64
static_assert(offsetof(NOTIFYICONDATAA, szTip) + tipSize == 88);
#endif

}  // namespace

bool WindowsTray::available() { return FindWindowA("Shell_TrayWnd", nullptr) != nullptr; }

bool WindowsTray::notify(TrayAction action, const TrayRecord& record) {
  NOTIFYICONDATAA data = {};
  data.cbSize = record.size;
  data.hWnd = reinterpret_cast<HWND>(record.window);
  data.uID = record.identifier;
  data.uFlags = record.flags;
  data.uCallbackMessage = record.callbackMessage;
  data.hIcon = reinterpret_cast<HICON>(record.icon);
  record.tip.copy(data.szTip, tipSize - 1);
  return Shell_NotifyIconA(static_cast<DWORD>(action), &data) || failed(trace_, "Shell_NotifyIcon", record.tip);
}

}  // namespace tellaxis::platform
