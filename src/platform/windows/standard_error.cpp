// Standard error: a console takes UTF-16, everything else UTF-8.
#include "platform/windows/standard_error.h"

#include "platform/windows/native.h"

namespace tellaxis::platform::windows {

namespace {

std::wstring onOneLine(std::wstring_view text) {
  std::wstring line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i, 2) == L"\r\n") continue;
    const wchar_t c = text[i];
    const bool blank = c == L'\r' || c == L'\n' || c == L'\t';
    line += blank ? L' ' : c < L' ' || c == L'\x7F' ? L'?' : c;
  }
  return line + L"\r\n";
}

}  // namespace

void writeErrorLine(std::string_view text) {
  const HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
  const std::wstring line = onOneLine(wide(text));
  DWORD written = 0;
  if (WriteConsoleW(error, line.data(), static_cast<DWORD>(line.size()), &written, nullptr)) return;
  const std::string bytes = utf8(line);
  WriteFile(error, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace tellaxis::platform::windows
