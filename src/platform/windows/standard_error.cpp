// Standard error: a console takes UTF-16, everything else UTF-8.
#include "platform/standard_error.h"

#include <windows.h>

#include <string>

#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

void writeStandardError(std::string_view line) {
  const HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
  const std::wstring text = wide(line) + L"\r\n";
  DWORD written = 0;
  if (WriteConsoleW(error, text.data(), static_cast<DWORD>(text.size()), &written, nullptr)) return;
  const std::string bytes = utf8(text);
  WriteFile(error, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace tellaxis::platform
