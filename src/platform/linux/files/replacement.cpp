// Replacement: what is at the target, whose it is, and writing in its place.
#include "platform/linux/files/replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/linux/files/new_file.h"
#include "platform/linux/kernel/timed_write.h"
#include "platform/linux/kernel/uninterrupted.h"

namespace tellaxis::platform {

namespace {

mode_t processMask() {
  static const mode_t mask = [] {
    const mode_t present = ::umask(0);
    ::umask(present);
    return present;
  }();
  return mask;
}

struct Target {
  std::string path;
  bool exists = false;
  struct stat status {};
  bool leadsToDevice = false;

  bool isFile() const { return S_ISREG(status.st_mode); }
  bool isLink() const { return S_ISLNK(status.st_mode); }
};

/// Looks up what is to be replaced.
bool findTarget(const Paths& paths, Target& target) {
  target.exists = ::lstat(target.path.c_str(), &target.status) == 0;
  if (!target.exists) {
    if (errno != ENOENT && errno != ENOTDIR) return false;
    Spelling other = paths.otherSpelling(target.path);
    target.path = std::move(other.path);
    target.exists = other.exists && ::lstat(target.path.c_str(), &target.status) == 0;
  }
  struct stat end {};
  target.leadsToDevice =
      target.exists && target.isLink() && ::stat(target.path.c_str(), &end) == 0 && S_ISCHR(end.st_mode);
  return true;
}

Descriptor openForWriting(const Target& target, int moreFlags) {
  const int flags = O_WRONLY | O_NOCTTY | O_CLOEXEC | moreFlags | (target.leadsToDevice ? 0 : O_NOFOLLOW);
  return Descriptor(untilUninterrupted([&] { return ::open(target.path.c_str(), flags); }));
}

/// Writes into a device or pipe without waiting for its other end.
bool writeIntoDevice(const Target& target, const std::function<bool(const Descriptor&)>& write) {
  if (S_ISDIR(target.status.st_mode)) {
    errno = EISDIR;
    return false;
  }
  const Descriptor device = openForWriting(target, O_NONBLOCK);
  return device && write(device);
}

/// Overwrites a file as it stands. A reader may meet half of it meanwhile.
bool writeInPlace(const Target& target, const std::function<bool(const Descriptor&)>& write) {
  const Descriptor file = openForWriting(target, O_NONBLOCK);
  struct stat status {};
  if (!file || ::fstat(file.number(), &status) != 0) return false;
  if (S_ISREG(status.st_mode)) return ::ftruncate(file.number(), 0) == 0 && write(file);
  errno = EINVAL;
  return false;
}

/// Gives a file created with `replaced`'s permissions the rest of its likeness, the owner only where that is allowed.
/// EPERM when those who could use the replaced file could not use this one.
bool resemble(const Descriptor& file, const struct stat& replaced) {
  const bool ours = replaced.st_uid == ::geteuid() && replaced.st_gid == ::getegid();
  const bool kept = ours || ::fchown(file.number(), replaced.st_uid, replaced.st_gid) == 0;
  if (!kept && errno != EPERM) return false;
  const bool forEverybody = ((replaced.st_mode >> 6U) & 7U & ~replaced.st_mode) == 0;
  const bool usable = kept || ::fchown(file.number(), static_cast<uid_t>(-1), replaced.st_gid) == 0 || forEverybody;
  const bool asCreated = ours && (replaced.st_mode & (processMask() | 07000)) == 0;
  if (!asCreated && ::fchmod(file.number(), replaced.st_mode & 07777) != 0) return false;
  if (!usable) errno = EPERM;
  return usable;
}

bool replaceWhole(const Target& target, Replacing how, const std::function<bool(const Descriptor&)>& write) {
  const bool alike = !how.ownerAlone && !how.forEverybody && target.exists && target.isFile();
  NewFile file(target.path, how.ownerAlone ? 0600 : alike ? target.status.st_mode & 0777 : 0666);
  if (!file) return false;
  if (alike && !resemble(file.file(), target.status) && (how.orInPlace || errno != EPERM)) return false;
  // The process's mask would keep the others out.
  if (how.forEverybody && ::fchmod(file.file().number(), 0644) != 0) return false;
  return write(file.file()) && file.replaceTarget();
}

/// The folder takes no new file, or the target no other in its place.
bool isForbidden(int error) { return error == EACCES || error == EPERM || error == EROFS || error == EBUSY; }

}  // namespace

bool copyAll(const Descriptor& from, const Descriptor& to) {
  char buffer[64 * 1024];
  for (off_t position = 0;;) {
    const ssize_t got = untilUninterrupted([&] { return ::pread(from.number(), buffer, sizeof buffer, position); });
    if (got <= 0) return got == 0;
    position += got;
    if (!writeAll(to, {buffer, static_cast<std::size_t>(got)})) return false;
  }
}

bool replaceContent(const Paths& paths, const std::string& path, Replacing how,
                    const std::function<bool(const Descriptor&)>& write) {
  Target target{.path = path};
  if (!findTarget(paths, target)) return false;
  const bool isDevice = target.leadsToDevice || !(target.isFile() || target.isLink());
  // What is for the owner alone goes into no device or pipe: who waits at its other end is unknown.
  if (target.exists && isDevice && !how.ownerAlone) return writeIntoDevice(target, write);
  if (replaceWhole(target, how, write)) return true;
  return how.orInPlace && target.exists && isForbidden(errno) && writeInPlace(target, write);
}

bool carryOver(const Descriptor& opened, const std::string& from, const std::string& to) {
  struct stat status {};
  if (::fstat(opened.number(), &status) != 0) return false;
  NewFile file(to, status.st_mode & 0777);
  if (!file || (!resemble(file.file(), status) && errno != EPERM) || !copyAll(opened, file.file())) return false;
  if (untilUninterrupted([&] { return ::fsync(file.file().number()); }) != 0 || !file.becomeTarget()) return false;
  if (::unlink(from.c_str()) == 0) return true;
  const int error = errno;
  ::unlink(to.c_str());
  errno = error;
  return false;
}

}  // namespace tellaxis::platform
