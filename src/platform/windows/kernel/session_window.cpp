// Session window: its thread and its messages.
#include "platform/windows/kernel/session_window.h"

#include <atomic>

namespace tellaxis::platform {

namespace {

constexpr wchar_t className[] = L"Tellaxis session";
constexpr wchar_t blockReason[] = L"Il lavoro in corso sta per finire.";

/// The system ends a program that does not answer within five seconds.
constexpr DWORD longestWait = 4'000;

std::atomic<unsigned> taskBars = 0;

UINT taskBarCreated() {
  static const UINT message = RegisterWindowMessageW(L"TaskbarCreated");
  return message;
}

template <class Operation>
Operation ofUser32(const char* name) {
  return reinterpret_cast<Operation>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), name)));
}

/// What the user reads while the computer waits for us; Vista and later.
void announce(HWND window) {
  using Create = BOOL(WINAPI*)(HWND, LPCWSTR);
  if (const auto create = ofUser32<Create>("ShutdownBlockReasonCreate")) create(window, blockReason);
}

void withdraw(HWND window) {
  using Destroy = BOOL(WINAPI*)(HWND);
  if (const auto destroy = ofUser32<Destroy>("ShutdownBlockReasonDestroy")) destroy(window);
}

}  // namespace

SessionWindow::SessionWindow(HANDLE stop)
    : stop_(stop),
      finished_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      ready_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      thread_([this] { run(); }) {}

SessionWindow::~SessionWindow() {
  SetEvent(finished_.get());
  WaitForSingleObject(ready_.get(), INFINITE);
  if (window_ != nullptr) PostMessageW(window_, WM_CLOSE, 0, 0);
  thread_.join();
}

void SessionWindow::run() {
  WNDCLASSW description = {};
  description.lpfnWndProc = procedure;
  description.hInstance = GetModuleHandleW(nullptr);
  description.lpszClassName = className;
  RegisterClassW(&description);
  // A window of the desktop, not one for messages alone: those hear nothing of the session.
  window_ =
      CreateWindowExW(0, className, L"", WS_OVERLAPPED, 0, 0, 0, 0, nullptr, nullptr, description.hInstance, this);
  SetEvent(ready_.get());
  if (window_ == nullptr) return;
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
}

LRESULT SessionWindow::answer(HWND window, UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case WM_QUERYENDSESSION: announce(window); return TRUE;
    case WM_ENDSESSION:
      // Another program may have refused the end.
      if (first != 0) {
        SetEvent(stop_);
        WaitForSingleObject(finished_.get(), longestWait);
      }
      withdraw(window);
      return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default:
      if (message == taskBarCreated()) ++taskBars;
      return DefWindowProcW(window, message, first, second);
  }
}

LRESULT CALLBACK SessionWindow::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_NCCREATE)
    SetWindowLongPtrW(window, GWLP_USERDATA,
                      reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(second)->lpCreateParams));
  auto* const self = reinterpret_cast<SessionWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return self == nullptr ? DefWindowProcW(window, message, first, second)
                         : self->answer(window, message, first, second);
}

unsigned taskBarsCreated() { return taskBars; }

}  // namespace tellaxis::platform
