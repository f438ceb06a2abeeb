// Program: its arguments and folder as the system tells them, and console events as requests to stop.
#include "platform/program.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <utility>

#include "platform/windows/kernel/end_event.h"
#include "platform/windows/kernel/native.h"
#include "platform/windows/kernel/session_window.h"

namespace tellaxis::platform {

namespace {

/// Set by the first request to stop; the system's own thread comes to `consoleEvent`.
std::atomic<HANDLE> stopRequested = nullptr;

/// Set to end a wait before its time; resets itself.
HANDLE wakeRequested = nullptr;

/// Of the only request to stop that there is.
std::unique_ptr<SessionWindow> sessionWindow;

/// Set by another process that asks this one to end; null before there is a main folder.
UniqueHandle endEvent;

/// The console outlives the program and gets back what it had.
UINT formerConsoleCodePage = 0;

BOOL WINAPI consoleEvent(DWORD kind) {
  const HANDLE requested = stopRequested;
  const bool second = requested == nullptr || WaitForSingleObject(requested, 0) == WAIT_OBJECT_0;
  if (second) return FALSE;
  SetEvent(requested);
  // When the console closes or the user leaves, the system ends the program as soon as this returns.
  if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT) Sleep(INFINITE);
  return TRUE;
}

}  // namespace

std::vector<std::string> programArguments(int /*count*/, char** /*words*/) {
  // No "there is no disk in the drive", no report of a crash: nobody is there to press a key, and jobs would wait.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  // A window that is slow to answer stays what it is: a ghost in its place gets closed in the midst of a receipt.
  DisableProcessWindowsGhosting();
  // What main gets has been through the machine's own code page, and patterns in it have been expanded.
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(utf8(words.get()[i]));
  formerConsoleCodePage = GetConsoleOutputCP();
  if (SetConsoleOutputCP(CP_UTF8)) std::atexit([] { SetConsoleOutputCP(formerConsoleCodePage); });
  return arguments;
}

bool stopWasAsked() {
  const HANDLE requested = stopRequested;
  return requested != nullptr && WaitForSingleObject(requested, 0) == WAIT_OBJECT_0;
}

std::string programFolder() {
  std::wstring path(32'768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  const std::size_t separator = path.find_last_of(L'\\');
  return utf8(path.substr(0, separator));
}

StopRequest::StopRequest() {
  stopRequested = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  wakeRequested = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  SetConsoleCtrlHandler(consoleEvent, TRUE);
  sessionWindow = std::make_unique<SessionWindow>(stopRequested);
}

StopRequest::~StopRequest() {
  sessionWindow.reset();
  SetConsoleCtrlHandler(consoleEvent, FALSE);
  CloseHandle(stopRequested.exchange(nullptr));
  CloseHandle(std::exchange(wakeRequested, nullptr));
  endEvent.reset();
}

void StopRequest::heed(std::string_view mainFolder) { endEvent = createEndEvent(mainFolder); }

bool StopRequest::waitFor(std::chrono::milliseconds duration) {
  const auto milliseconds = duration.count() > 0 ? static_cast<DWORD>(duration.count()) : 0;
  const HANDLE events[] = {stopRequested, wakeRequested, endEvent.get()};
  const DWORD first = WaitForMultipleObjects(endEvent ? 3 : 2, events, FALSE, milliseconds);
  return first == WAIT_OBJECT_0 || first == WAIT_OBJECT_0 + 2;
}

bool StopRequest::asked() const {
  const auto isSet = [](HANDLE event) { return event != nullptr && WaitForSingleObject(event, 0) == WAIT_OBJECT_0; };
  return isSet(stopRequested) || isSet(endEvent.get());
}

void StopRequest::wake() { SetEvent(wakeRequested); }

}  // namespace tellaxis::platform
