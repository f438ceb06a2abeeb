// Program file: looking programs up.
#include "platform/windows/processes/program_file.h"

#include <windows.h>

#include "platform/processes/command_line.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

bool isFile(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace

std::optional<std::wstring> programFile(std::string_view name) {
  const std::wstring program = wide(name);
  wchar_t path[MAX_PATH];
  const DWORD length = isPath(name) ? GetFullPathNameW(program.c_str(), MAX_PATH, path, nullptr)
                                    : SearchPathW(nullptr, program.c_str(), nullptr, MAX_PATH, path, nullptr);
  if (length == 0 || length >= MAX_PATH || !isFile(path)) return std::nullopt;
  return std::wstring(path, length);
}

}  // namespace tellaxis::platform
