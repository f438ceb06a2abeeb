// New file: a file that is written under a hidden name and takes its own name once it is whole.
#pragma once

#include <sys/types.h>

#include <string>

#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

/// A file under a temporary name beside its target. Destroyed before it took the target's name, it leaves nothing
/// behind. Failures leave `errno`.
class NewFile {
 public:
  /// `target` is a native path; false afterwards when the file could not be made.
  NewFile(std::string target, mode_t permissions);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  explicit operator bool() const { return static_cast<bool>(file_); }
  const Descriptor& file() const { return file_; }

  /// Takes the place of whatever has the target's name.
  bool replaceTarget();

  /// Takes the target's name, which nothing may have.
  bool becomeTarget();

 private:
  Descriptor create(mode_t permissions) const;

  std::string target_;
  std::string name_;
  Descriptor file_;
  bool done_ = false;
};

/// Gives `from` the name `to`, which nothing may have. On a failure, with `errno`, everything is as before.
bool renameWithoutReplacing(const std::string& from, const std::string& to);

}  // namespace tellaxis::platform
