// Inspection of Windows: attributes, rights tried without a change, and the first bytes of programs.
#include "platform/windows/inspection.h"

#include <windows.h>

#include <algorithm>

#include "platform/processes/command_line.h"
#include "platform/windows/kernel/native.h"
#include "platform/windows/processes/program_file.h"

namespace tellaxis::platform {

namespace {

constexpr DWORD sharedByAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Whether the system would grant the access. A file that somebody uses alone at the moment is not refused for good.
bool may(const std::wstring& path, DWORD access) {
  const UniqueHandle opened = owned(
      CreateFileW(path.c_str(), access, sharedByAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  return opened || GetLastError() == ERROR_SHARING_VIOLATION;
}

std::uint64_t ticksOf(const FILETIME& time) { return (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime; }

std::chrono::seconds ageOf(const FILETIME& changed) {
  constexpr std::uint64_t ticksOfASecond = 10'000'000;
  FILETIME now = {};
  GetSystemTimeAsFileTime(&now);
  const std::uint64_t since = std::max(ticksOf(now), ticksOf(changed)) - ticksOf(changed);
  return std::chrono::seconds(since / ticksOfASecond);
}

/// Every program of Windows begins so.
bool isProgram(const std::wstring& file) {
  const UniqueHandle opened = owned(
      CreateFileW(file.c_str(), GENERIC_READ, sharedByAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  char mark[2] = {};
  DWORD got = 0;
  return opened && ReadFile(opened.get(), mark, sizeof mark, &got, nullptr) && got == sizeof mark && mark[0] == 'M' &&
         mark[1] == 'Z';
}

}  // namespace

PathLook WindowsInspection::look(std::string_view path) {
  const std::wstring native = wide(path);
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  if (!GetFileAttributesExW(native.c_str(), GetFileExInfoStandard, &data)) return {};
  const bool isFolder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return {.isFile = !isFolder,
          .isFolder = isFolder,
          .mayRead = may(native, isFolder ? FILE_LIST_DIRECTORY : GENERIC_READ),
          .mayWrite = may(native, isFolder ? FILE_ADD_FILE : GENERIC_WRITE),
          .age = ageOf(data.ftLastWriteTime)};
}

std::optional<std::uint64_t> WindowsInspection::freeBytes(std::string_view folder) {
  ULARGE_INTEGER room = {};
  if (!GetDiskFreeSpaceExW(wide(folder).c_str(), &room, nullptr, nullptr)) return std::nullopt;
  return room.QuadPart;
}

ProgramLook WindowsInspection::program(std::string_view commandLine) {
  const auto found = findCommand(commandLine, programFile);
  if (!found) return {};
  const std::string file = narrowForReading(found->program);
  return {.file = file, .executable = isBatchFile(file) || isProgram(found->program)};
}

PortLook WindowsInspection::port(int number, bool mayOpen) {
  PortLook found{.device = "COM" + std::to_string(number)};
  wchar_t target[512];
  if (number < 1 || QueryDosDeviceW(wide(found.device).c_str(), target, 512) == 0) return found;
  found.access = PortAccess::free;
  if (!mayOpen) return found;
  const UniqueHandle opened = owned(CreateFileW(wide("\\\\.\\" + found.device).c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (opened) return found;
  const DWORD reason = GetLastError();
  const bool held = reason == ERROR_ACCESS_DENIED || reason == ERROR_SHARING_VIOLATION || reason == ERROR_BUSY;
  found.access = held ? PortAccess::held : PortAccess::missing;
  return found;
}

}  // namespace tellaxis::platform
