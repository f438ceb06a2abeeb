// Processes of Windows: CreateProcess, OpenProcess, WaitForSingleObject and CloseHandle.
#include "platform/windows/processes.h"

#include <optional>

#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

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

struct Command {
  std::wstring program;
  std::wstring arguments;  ///< as written, with the blanks before them
};

/// Double quotes group; they are no part of the program's name.
Command split(std::wstring_view line) {
  Command command;
  const std::size_t first = line.find_first_not_of(L" \t");
  line.remove_prefix(first == std::wstring_view::npos ? line.size() : first);
  bool quoted = false;
  std::size_t end = 0;
  for (; end < line.size() && (quoted || (line[end] != L' ' && line[end] != L'\t')); ++end) {
    if (line[end] == L'"')
      quoted = !quoted;
    else
      command.program += line[end];
  }
  command.arguments = line.substr(end);
  return command;
}

/// The full path: of a name with a folder in it, from the present folder; of a bare name, from the search path.
std::optional<std::wstring> resolved(const std::wstring& program) {
  wchar_t path[MAX_PATH];
  const bool bare = program.find_first_of(L"\\/:") == std::wstring::npos;
  const DWORD length = bare ? SearchPathW(nullptr, program.c_str(), L".exe", MAX_PATH, path, nullptr)
                            : GetFullPathNameW(program.c_str(), MAX_PATH, path, nullptr);
  if (length == 0 || length >= MAX_PATH) return std::nullopt;
  return std::wstring(path, length);
}

HANDLE native(ProcessHandle handle) { return reinterpret_cast<HANDLE>(handle); }

}  // namespace

ProcessId WindowsProcesses::start(std::string_view commandLine, WindowStyle style) {
  const Command command = split(wide(commandLine));
  const auto program = resolved(command.program);
  if (!program) {
    failed(trace_, "start", commandLine);
    return 0;
  }
  // The full path in quotes: a batch file is found only so, and ".exe" is added where there is no extension.
  std::wstring line = L'"' + *program + L'"' + command.arguments;
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = showCommand(style);
  PROCESS_INFORMATION process = {};
  // A console of its own: the style applies to it, and Ctrl-C in ours does not reach the program. Error boxes as the
  // program expects them, not as we do.
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NEW_CONSOLE | CREATE_DEFAULT_ERROR_MODE,
                      nullptr, nullptr, &startup, &process)) {
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
  return WaitForSingleObject(native(handle), INFINITE) == WAIT_OBJECT_0 ||
         failed(trace_, "WaitForSingleObject", std::to_string(handle));
}

bool WindowsProcesses::close(ProcessHandle handle) {
  return CloseHandle(native(handle)) || failed(trace_, "CloseHandle", std::to_string(handle));
}

}  // namespace tellaxis::platform
