// Profile file: an INI file on the disk, read whole while nobody writes to it.
#pragma once

#include <sys/stat.h>

#include <array>
#include <string>
#include <string_view>

#include "platform/linux/files/writer_hold.h"
#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

/// What was met when a file was opened.
enum class FileState {
  read,           ///< its text is whole
  absent,         ///< there is none; the text is empty
  openElsewhere,  ///< another process has it open for writing; the text may be half of what it will be
  locked,         ///< another process holds a lock on it; no text
  failed,         ///< no file, not readable, or too large; no text
};

/// Opens a file or folder for reading, seen from the open folder `folder` (or AT_FDCWD), without ever waiting for
/// anybody.
Descriptor openForReading(int folder, const char* name, int moreFlags = 0);

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

  /// True when the system does not tell whether somebody has the file open for writing: the text may be half of what it
  /// will be.
  bool writerUnknown() const { return hold_ == Hold::unknown && state_ == FileState::read; }

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
  Hold hold_ = Hold::free;
  bool leased_ = false;
  struct stat facts_ = {};
  std::array<char, 16384> buffer_;
  std::string large_;
  std::string_view text_;
  FileState state_;
};

}  // namespace tellaxis::platform
