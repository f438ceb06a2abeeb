// Movable files: permissions, sticky folders, room, and what has the name already.
#include "platform/linux/files/movable_files.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/linux/files/file_name.h"
#include "platform/linux/files/file_status.h"
#include "platform/linux/files/finished_file.h"
#include "platform/linux/files/folder.h"
#include "platform/linux/files/writer_hold.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

/// What a job with its driver, its printer and its serial line takes at most, with something to spare.
constexpr std::size_t descriptorsOfJob = 16;

int whyUnchangeable(const Descriptor& folder, struct stat& status) {
  if (::fstat(folder.number(), &status) != 0) return errno;
  return ::faccessat(folder.number(), ".", W_OK | X_OK, AT_EACCESS) == 0 ? 0 : errno;
}

}  // namespace

int MovableFiles::whyNone() {
  if (!asked_) none_ = ask();
  asked_ = true;
  return none_;
}

int MovableFiles::ask() {
  if (const int reason = whyUnchangeable(from_, fromStatus_); reason != 0) return reason;
  if (const int reason = whyUnchangeable(to_, toStatus_); reason != 0) return reason;
  const bool read = readFolder(to_, [&](const dirent64& entry) {
    if (entry.d_name[0] == '.') return;
    const auto text = textOfName(entry.d_name);
    if (!text) return;
    if (std::string capitals = upperCase(*text); isWanted_(capitals))
      waiting_[std::move(capitals)].emplace_back(entry.d_name);
  });
  return read ? 0 : errno;
}

int MovableFiles::whyNot(const struct stat& file, std::string_view capitals) {
  if (!stickinessAllows(fromStatus_, file)) return EPERM;
  if (const int reason = whyNotReplaced(capitals); reason != 0) return reason;
  return whyNoRoom(file);
}

bool MovableFiles::isNameTaken(std::string_view capitals) const {
  const auto found = waiting_.find(capitals);
  struct stat status {};
  return found != waiting_.end() && std::ranges::any_of(found->second, [&](const std::string& name) {
           return ::fstatat(to_.number(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
         });
}

/// Why the file that has this name there could not be deleted.
int MovableFiles::whyNotReplaced(std::string_view capitals) const {
  const auto found = waiting_.find(capitals);
  if (found == waiting_.end()) return 0;
  if (found->second.size() > 1) return EEXIST;
  const char* name = found->second.front().c_str();
  struct stat status {};
  if (::fstatat(to_.number(), name, &status, AT_SYMLINK_NOFOLLOW) != 0) return errno == ENOENT ? 0 : errno;
  if (!S_ISREG(status.st_mode)) return EEXIST;
  if (!stickinessAllows(toStatus_, status)) return EPERM;
  const Descriptor older = openRegularFile(to_.number(), name);
  if (!older) return errno == EACCES || errno == ENOENT ? 0 : errno;
  return isHeld(older) ? ETXTBSY : 0;
}

int MovableFiles::whyNoRoom(const struct stat& file) {
  if (fromStatus_.st_dev == toStatus_.st_dev) return 0;
  struct statvfs there {};
  if (::fstatvfs(to_.number(), &there) != 0) return errno;
  const std::uint64_t block = there.f_frsize;
  needed_ += (static_cast<std::uint64_t>(file.st_size) / block + 1) * block;
  if (there.f_blocks != 0 && needed_ > there.f_bavail * block) return ENOSPC;
  return there.f_files != 0 && there.f_favail == 0 ? ENOSPC : 0;
}

bool enoughDescriptors() {
  struct rlimit limit {};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) limit.rlim_cur = 0;
  std::array<Descriptor, descriptorsOfJob> spare;
  for (Descriptor& descriptor : spare) {
    descriptor = Descriptor(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0));
    if (!descriptor) return errno != EMFILE && errno != ENFILE;
    // The lowest free number is given: one so far below the limit leaves enough above it.
    if (static_cast<rlim_t>(descriptor.number()) < limit.rlim_cur / 4) return true;
  }
  return true;
}

}  // namespace tellaxis::platform
