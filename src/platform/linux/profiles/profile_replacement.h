// Profile replacement: a new text in the place of an INI file, whole or not at all, one writer a folder at a time.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/kernel/descriptor.h"
#include "platform/linux/profiles/profile_file.h"

namespace tellaxis::platform {

/// Exclusive use of a folder among all writers of INI files in it; nothing is left on the disk.
class FolderLock {
 public:
  explicit FolderLock(const std::string& folder);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  int folder() const { return folder_.number(); }

  /// 0 when held, EWOULDBLOCK when another holds it, otherwise why the folder cannot be locked.
  int error() const { return error_; }

 private:
  Descriptor folder_;
  int error_ = 0;
};

/// The outcome of `replaceFile`.
enum class Replaced { done, changedMeanwhile, failed };

/// Puts `text` in the place of the file `name` that `current` read, with its mode and owner; a reader meets the old or
/// the new text, never less. On `failed`, `error` is the system's error number. The folder must be locked.
Replaced replaceFile(const FolderLock& lock, const char* name, const ProfileFile& current, std::string_view text,
                     int& error);

/// The file that a path means: the end of its chain of symbolic links, which need not exist; nothing for an endless
/// one.
std::optional<std::string> linkTarget(std::string path);

}  // namespace tellaxis::platform
