// File status: numbers and permissions.
#include "platform/linux/files/file_status.h"

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/linux/files/file_name.h"

namespace tellaxis::platform {

namespace {

constexpr std::int64_t nanoseconds = 1'000'000'000;

bool mayWrite(const char* path, int access) { return ::faccessat(AT_FDCWD, path, access, AT_EACCESS) == 0; }

/// True when this process may do what only a file's owner may.
bool isOwnerOfAll() {
  __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
  std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};
  if (::syscall(SYS_capget, &header, sets.data()) != 0) return ::geteuid() == 0;
  return (sets[0].effective & CAP_TO_MASK(CAP_FOWNER)) != 0;
}

}  // namespace

std::optional<FileIdentity> identityOf(const std::string& native) {
  struct stat status {};
  if (::stat(native.c_str(), &status) != 0) return std::nullopt;
  return FileIdentity{.device = status.st_dev,
                      .file = status.st_ino,
                      .size = static_cast<std::uint64_t>(status.st_size),
                      .time = status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec};
}

bool stickinessAllows(const struct stat& folder, const struct stat& file) {
  if ((folder.st_mode & S_ISVTX) == 0) return true;
  const uid_t user = ::geteuid();
  if (user == folder.st_uid || user == file.st_uid || isOwnerOfAll()) return true;
  errno = EPERM;
  return false;
}

bool canBeRemoved(const std::string& native) {
  std::string folder = native.substr(0, native.size() - lastName(native).size());
  if (folder.empty()) folder = ".";
  struct stat folderStatus {};
  struct stat status {};
  if (::stat(folder.c_str(), &folderStatus) != 0 || ::lstat(native.c_str(), &status) != 0) return false;
  if (!mayWrite(folder.c_str(), W_OK | X_OK) || !stickinessAllows(folderStatus, status)) return false;
  // A file marked against every change says so; what its permissions say is not asked when it is deleted.
  return mayWrite(native.c_str(), W_OK) || errno != EPERM;
}

}  // namespace tellaxis::platform
