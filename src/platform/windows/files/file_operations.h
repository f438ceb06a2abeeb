// File operations: the steps on wide-character paths that the file services are made of. Failures leave the reason as
// the thread's last error.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tellaxis::platform {

/// The bare name of the visible file at exactly this path. A folder, a hidden file and a pattern are none.
std::optional<std::wstring> findFile(const std::wstring& path);

/// The bare names of the visible files of a folder, in the system's order; nothing when it cannot be read.
std::optional<std::vector<std::wstring>> filesOf(const std::wstring& folder);

/// A path in the folder of `target` that no other process and no other call uses.
std::wstring temporaryBeside(const std::wstring& target);

/// Gives `temporary` the name `target`, whatever was there; on a failure `temporary` is gone.
bool replaceFile(const std::wstring& temporary, const std::wstring& target);

bool writeAll(HANDLE file, std::string_view text);

/// Makes a new file, readable by the present user alone when `ownerOnly`; on a failure there is none.
bool createWith(const std::wstring& path, std::string_view text, bool ownerOnly);

}  // namespace tellaxis::platform
