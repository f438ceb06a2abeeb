// Folder: telling one that does not answer from one that is not there.
#include "platform/linux/files/folder.h"

#include <linux/magic.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cerrno>

#include "platform/linux/files/file_name.h"

namespace tellaxis::platform {

namespace {

/// What a file system of another computer says while that one cannot be reached.
constexpr int unreachable[] = {EHOSTDOWN,    EHOSTUNREACH, ENETDOWN, ENETUNREACH, ETIMEDOUT, ESTALE,
                               ECONNREFUSED, ENOTCONN,     EIO,      ENODEV,      ENXIO};

}  // namespace

bool doesNotAnswer(std::string native, int error) {
  if (std::ranges::find(unreachable, error) != std::end(unreachable)) return true;
  if (error != ENOENT) return false;
  // Where the automounter could not mount, there is nothing in its own folder.
  struct statfs system {};
  while (::statfs(native.c_str(), &system) != 0) {
    const std::size_t length = folderLength(native);
    if (errno != ENOENT || length <= 1) return false;
    native.resize(length - 1);
  }
  return system.f_type == AUTOFS_SUPER_MAGIC;
}

}  // namespace tellaxis::platform
