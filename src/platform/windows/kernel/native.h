// Native: text and failures between code page 1252, the system's UTF-16, and UTF-8 for consoles and command lines.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/trace.h"

namespace tellaxis::platform {

/// Code page 1252 whatever the machine's own one is; its undefined bytes become U+0081 and so on.
std::wstring wide(std::string_view text);

/// Nothing when a character is not in code page 1252.
std::optional<std::string> narrow(std::wstring_view text);

/// The same with "?" in the place of foreign characters.
std::string narrowForReading(std::wstring_view text);

std::wstring wideFromUtf8(std::string_view text);
std::string utf8(std::wstring_view text);

/// The system's own sentence for an error number, in code page 1252.
std::string systemReason(DWORD error);

/// Reports a failed step and returns false.
bool failed(Trace& trace, std::string_view operation, std::string_view subject, std::string_view reason);

/// The same with the system's reason for the calling thread's last error.
bool failed(Trace& trace, std::string_view operation, std::string_view subject);

struct HandleCloser {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};

/// A handle that is closed with its owner; null is none.
using UniqueHandle = std::unique_ptr<void, HandleCloser>;

/// The handle of a call that reports a failure by INVALID_HANDLE_VALUE.
inline UniqueHandle owned(HANDLE handle) { return UniqueHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle); }

}  // namespace tellaxis::platform
