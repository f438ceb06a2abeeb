// Paths: from Windows paths in code page 1252 to native ones.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/files/folder_names.h"

namespace tellaxis::platform {

/// Another spelling of a path of which something does not exist as spelled.
struct Spelling {
  std::string path;     ///< in it every folder that exists is spelled as on the disk
  bool exists = false;  ///< the whole path names something, in this spelling
};

/// A backslash separates folders as a slash does; a drive letter is a folder; bytes above 127 become UTF-8. Without a
/// drive a path is native. May be used by several threads.
class Paths {
 public:
  /// Native folders. `drives` by upper-case letter; a letter that it lacks is the folder "drive_c" (and so on) of the
  /// main folder.
  Paths(std::string mainFolder, std::map<char, std::string> drives);

  /// The native path spelled as `path` is, whether it exists or not; nothing for an empty path or one with a NUL.
  std::optional<std::string> spelled(std::string_view path) const;

  /// The native path of what `path` names on the disk: each component that does not exist as spelled is looked up
  /// without regard to case. What does not exist at all keeps its spelling. Nothing for an empty path or one with a
  /// NUL.
  std::optional<std::string> resolve(std::string_view path) const;

  /// Looks a native path up without regard to case, after it was found that nothing exists there as spelled.
  Spelling otherSpelling(const std::string& native) const;

  /// True when it is known without a look that a native path names nothing, in whatever case.
  bool isKnownToBeAbsent(const std::string& native) const;

 private:
  std::string mainFolder_;
  std::map<char, std::string> drives_;
  mutable FolderNames names_;
};

}  // namespace tellaxis::platform
