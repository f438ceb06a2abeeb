// Processes of Windows: CreateProcess, OpenProcess, WaitForSingleObject and CloseHandle.
#include "platform/windows/processes.h"

#include <functional>
#include <optional>

#include "platform/processes/command_line.h"
#include "platform/windows/kernel/message_wait.h"
#include "platform/windows/kernel/native.h"
#include "platform/windows/processes/program_file.h"

namespace tellaxis::platform {

namespace {

constexpr wchar_t compatibilityLayer[] = L"__COMPAT_LAYER";
#ifndef ERROR_ELEVATION_REQUIRED
constexpr DWORD ERROR_ELEVATION_REQUIRED = 740;
#endif

constexpr std::pair<WindowStyle, WORD> showCommands[] = {
    {WindowStyle::hidden, SW_HIDE},
    {WindowStyle::minimised, SW_SHOWMINIMIZED},
    {WindowStyle::minimisedWithoutFocus, SW_SHOWMINNOACTIVE},
};

WORD showCommand(WindowStyle wanted) {
  for (const auto& [style, command] : showCommands)
    if (style == wanted) return command;
  return SW_SHOWNORMAL;
}

/// A program that asks for an administrator's rights is started with those of the user: most drivers ask without need.
/// Keeps the last error.
bool startAsInvoker(Trace& trace, std::string_view commandLine, const std::function<bool()>& create) {
  const DWORD reason = GetLastError();
  if (reason != ERROR_ELEVATION_REQUIRED) return false;
  failed(trace, "start", commandLine, "il programma chiede diritti di amministratore: avviato con quelli dell'utente");
  SetEnvironmentVariableW(compatibilityLayer, L"RunAsInvoker");
  const bool started = create();
  const DWORD newReason = GetLastError();
  SetEnvironmentVariableW(compatibilityLayer, nullptr);
  SetLastError(newReason);
  return started;
}

HANDLE native(ProcessHandle handle) { return reinterpret_cast<HANDLE>(handle); }

}  // namespace

ProcessId WindowsProcesses::start(std::string_view commandLine, WindowStyle style) {
  const auto command = findCommand(commandLine, programFile);
  if (!command) {
    failed(trace_, "start", commandLine, systemReason(ERROR_FILE_NOT_FOUND));
    return 0;
  }
  // The full path in quotes: a batch file is found only so.
  std::wstring line = L'"' + command->program + L'"' + wide(command->arguments);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = showCommand(style);
  PROCESS_INFORMATION process = {};
  // A console of its own: the style applies to it, and Ctrl-C in ours does not reach the program. Error boxes as the
  // program expects them, not as we do.
  const auto create = [&] {
    return CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NEW_CONSOLE | CREATE_DEFAULT_ERROR_MODE,
                          nullptr, nullptr, &startup, &process) != FALSE;
  };
  if (!create() && !startAsInvoker(trace_, commandLine, create)) {
    failed(trace_, "start", commandLine);
    return 0;
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return process.dwProcessId;
}

ProcessHandle WindowsProcesses::open(ProcessId process) {
  const HANDLE handle = OpenProcess(SYNCHRONIZE, FALSE, process);
  if (handle == nullptr) failed(trace_, "OpenProcess", std::to_string(process));
  return reinterpret_cast<ProcessHandle>(handle);
}

bool WindowsProcesses::wait(ProcessHandle handle) {
  return (handle != 0 && waitForMessages(native(handle), INFINITE)) ||
         failed(trace_, "WaitForSingleObject", std::to_string(handle));
}

bool WindowsProcesses::close(ProcessHandle handle) {
  return CloseHandle(native(handle)) || failed(trace_, "CloseHandle", std::to_string(handle));
}

}  // namespace tellaxis::platform
