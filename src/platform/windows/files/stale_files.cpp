// Stale files: by their names, their age, and the processes that run.
#include "platform/windows/files/stale_files.h"

#include <cstdint>
#include <cstdlib>

#include "platform/windows/files/file_operations.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

using FileTicks = std::chrono::duration<std::uint64_t, std::ratio<1, 10'000'000>>;

FileTicks ticksOf(const FILETIME& time) {
  return FileTicks((std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime);
}

bool isOver(DWORD process) {
  const UniqueHandle running = owned(OpenProcess(SYNCHRONIZE, FALSE, process));
  if (!running) return GetLastError() == ERROR_INVALID_PARAMETER;
  return WaitForSingleObject(running.get(), 0) == WAIT_OBJECT_0;
}

/// The process whose temporary file bears this name; 0 for a name of another kind.
DWORD ownerOf(const std::wstring& name) {
  if (!name.starts_with(temporaryBegin) || !name.ends_with(temporaryEnd)) return 0;
  return std::wcstoul(name.c_str() + temporaryBegin.size(), nullptr, 10);
}

}  // namespace

void removeStaleFiles(const std::wstring& folder, std::chrono::seconds age) {
  const auto names = filesOf(folder.empty() ? L"." : folder.substr(0, folder.size() - 1));
  if (!names) return;
  FILETIME now = {};
  GetSystemTimeAsFileTime(&now);
  for (const std::wstring& name : *names) {
    const DWORD owner = ownerOf(name);
    if (owner == 0 || !isOver(owner)) continue;
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    const std::wstring path = folder + name;
    if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) &&
        ticksOf(data.ftLastWriteTime) + age <= ticksOf(now))
      DeleteFileW(path.c_str());
  }
}

}  // namespace tellaxis::platform
