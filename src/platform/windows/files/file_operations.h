// File operations: the steps on wide-character paths that the file services are made of. Failures leave the reason as
// the thread's last error.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tellaxis::platform {

/// The bare name of the visible file at exactly this path. A folder, a hidden file and a pattern are none.
std::optional<std::wstring> findFile(const std::wstring& path);

/// The bare names of the visible files of a folder, in the system's order; nothing when it cannot be read.
std::optional<std::vector<std::wstring>> filesOf(const std::wstring& folder);

/// Whether a path begins with a share or a connected drive of another computer that does not answer.
bool doesNotAnswer(const std::wstring& path);

/// How the names of our temporary files begin, before the number of the process, and end.
inline constexpr std::wstring_view temporaryBegin = L"~tlx";
inline constexpr std::wstring_view temporaryEnd = L".tmp";

/// A path in the folder of `target` that no other process and no other call uses.
std::wstring temporaryBeside(const std::wstring& target);

/// The same in the folder above it, so that whoever watches the folder sees a new file appear, whole, and not one
/// renamed. Nothing where there is none.
std::optional<std::wstring> temporaryAbove(const std::wstring& target);

/// How long a step is tried again that somebody stands in the way of: a virus scanner or an indexer holds new files for
/// moments. One object may serve several steps.
class Retries {
 public:
  /// Carries out `step` until it succeeds, fails for another reason, or the time is over.
  bool tryAgain(const std::function<bool()>& step);

 private:
  std::optional<DWORD> begun_;  ///< the first refusal
};

/// Copies a file to a path where there is none, and leaves it without the mark that keeps it from being written over.
bool copyToNew(const std::wstring& from, const std::wstring& to);

/// Deletes a file. One that somebody still holds open gets another name outside its folder first, since it would keep
/// its own until it is closed.
bool removeFile(const std::wstring& path);

/// Gives `temporary` the name `target`, whatever was there; on a failure `temporary` is gone.
bool replaceFile(const std::wstring& temporary, const std::wstring& target);

bool writeAll(HANDLE file, std::string_view text);

/// Makes the content of `from` that of a file which stays where it is, though others may have it open.
bool overwrite(HANDLE from, const std::wstring& target);

/// Makes a new file, readable by the present user alone when `ownerOnly`; on a failure there is none.
bool createWith(const std::wstring& path, std::string_view text, bool ownerOnly);

}  // namespace tellaxis::platform
