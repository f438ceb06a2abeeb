// Movable files: which files of a folder can be read and moved to another one, found out without moving them.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

/// One look at a folder and at the one that its files are to be moved to. What the folders allow is asked at the first
/// file only. Reasons are the system's error numbers; 0 is none.
class MovableFiles {
 public:
  /// Names are given in upper case, in code page 1252. `isWanted` tells which will be asked for: only those are kept of
  /// a full folder.
  MovableFiles(const Descriptor& from, const Descriptor& to, std::function<bool(std::string_view)> isWanted)
      : from_(from), to_(to), isWanted_(std::move(isWanted)) {}

  /// Why no file at all could be moved.
  int whyNone();

  /// Why a file could not be moved there under this name, where a file of that name is deleted first.
  int whyNot(const struct stat& file, std::string_view capitals);

  /// Whether what had this name there at the first file's look is still there.
  bool isNameTaken(std::string_view capitals) const;

 private:
  int ask();
  int whyNoRoom(const struct stat& file);
  int whyNotReplaced(std::string_view capitals) const;

  const Descriptor& from_;
  const Descriptor& to_;
  std::function<bool(std::string_view)> isWanted_;
  bool asked_ = false;
  int none_ = 0;
  struct stat fromStatus_ {};
  struct stat toStatus_ {};
  std::uint64_t needed_ = 0;  ///< bytes of the files that change the file system
  std::map<std::string, std::vector<std::string>, std::less<>> waiting_;  ///< names there, by their upper-case texts
};

/// True when a job could be carried out with the descriptors that this process may still open.
bool enoughDescriptors();

}  // namespace tellaxis::platform
