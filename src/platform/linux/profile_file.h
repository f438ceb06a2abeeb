// Profile file: an INI file on the disk, read whole while nobody writes to it, and replaced whole or not at all.
#pragma once

#include <sys/stat.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/descriptor.h"

namespace tellaxis::platform {

/// What was met when a file was opened.
enum class FileState {
  read,           ///< its text is whole
  absent,         ///< there is none; the text is empty
  openElsewhere,  ///< another process has it open for writing; the text may be half of what it will be
  locked,         ///< another process holds a lock on it; no text
  failed,         ///< no file, not readable, or too large; no text
};

/// The text of one file as it was at one moment. Where the system grants a lease (to the file's owner, on local disks)
/// writers that come while this object lives wait until it is gone.
class ProfileFile {
 public:
  /// Opens and reads `name`, seen from the open folder `folder` (or AT_FDCWD).
  ProfileFile(int folder, const char* name);
  ~ProfileFile();
  ProfileFile(const ProfileFile&) = delete;
  ProfileFile& operator=(const ProfileFile&) = delete;

  FileState state() const { return state_; }
  std::string_view text() const { return text_; }

  /// The system's error number when `failed`.
  int error() const { return error_; }

  /// Mode, owner and identity of the file that was read.
  const struct stat& facts() const { return facts_; }

  /// True when the file of that name is this one, unchanged since, and no writer is waiting to open it; for an absent
  /// one when there still is none.
  bool isAt(int folder, const char* name) const;

 private:
  FileState open();
  FileState readText();

  Descriptor file_;
  int error_ = 0;
  bool leased_ = false;
  struct stat facts_ = {};
  std::array<char, 16384> buffer_;
  std::string large_;
  std::string_view text_;
  FileState state_;
};

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
