// Native: conversions by the system's own tables.
#include "platform/windows/kernel/native.h"

#include <algorithm>

namespace tellaxis::platform {

namespace {

constexpr UINT codePage1252 = 1252;

std::wstring widened(UINT codePage, std::string_view text) {
  const int length = static_cast<int>(text.size());
  std::wstring result(text.size(), L'\0');
  result.resize(static_cast<std::size_t>(
      MultiByteToWideChar(codePage, 0, text.data(), length, result.data(), static_cast<int>(result.size()))));
  return result;
}

std::string narrowed(std::wstring_view text, BOOL& foreign) {
  foreign = FALSE;
  std::string result(text.size(), '\0');
  const int length = static_cast<int>(text.size());
  result.resize(static_cast<std::size_t>(WideCharToMultiByte(codePage1252, WC_NO_BEST_FIT_CHARS, text.data(), length,
                                                             result.data(), length, nullptr, &foreign)));
  return result;
}

}  // namespace

std::wstring wide(std::string_view text) { return widened(codePage1252, text); }

std::optional<std::string> narrow(std::wstring_view text) {
  BOOL foreign = FALSE;
  std::string result = narrowed(text, foreign);
  if (foreign) return std::nullopt;
  return result;
}

std::string narrowForReading(std::wstring_view text) {
  BOOL foreign = FALSE;
  return narrowed(text, foreign);
}

std::wstring wideFromUtf8(std::string_view text) { return widened(CP_UTF8, text); }

std::string utf8(std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(), size, nullptr, nullptr);
  return result;
}

std::string systemReason(DWORD error) {
  wchar_t buffer[512];
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                                      buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
  std::string reason = narrowForReading({buffer, length});
  reason.erase(reason.find_last_not_of("\r\n .") + 1);
  return reason.empty() ? "errore " + std::to_string(error) : reason;
}

bool failed(Trace& trace, std::string_view operation, std::string_view subject, std::string_view reason) {
  trace.failed(operation, subject, reason);
  return false;
}

bool failed(Trace& trace, std::string_view operation, std::string_view subject) {
  return failed(trace, operation, subject, systemReason(GetLastError()));
}

}  // namespace tellaxis::platform
