// Folder: reading the entries of a folder in big pieces.
#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <string>
#include <string_view>

#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

inline Descriptor openFolder(const std::string& native) {
  return Descriptor(::open(native.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

/// Names that begin with a dot.
inline bool isHidden(std::string_view name) { return name.starts_with('.'); }

/// True for an entry that is a visible regular file, not a link to one.
inline bool isListed(const Descriptor& folder, const dirent64& entry) {
  if (isHidden(entry.d_name)) return false;
  if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_REG;
  struct stat status {};
  return ::fstatat(folder.number(), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode);
}

/// Whether a folder that could not be looked at, with this error, is one that may answer later.
bool doesNotAnswer(std::string native, int error);

/// Calls `take` with each entry of an open folder, "." and ".." too. False, with `errno`, when it could not be read.
template <class Take>
bool readFolder(const Descriptor& folder, Take take) {
  constexpr std::size_t size = 32 * 1024;
  alignas(dirent64) char buffer[size];
  for (;;) {
    const ssize_t got = ::getdents64(folder.number(), buffer, size);
    if (got <= 0) return got == 0;
    for (ssize_t position = 0; position < got;) {
      const auto* entry = reinterpret_cast<const dirent64*>(buffer + position);
      take(*entry);
      position += entry->d_reclen;
    }
  }
}

}  // namespace tellaxis::platform
