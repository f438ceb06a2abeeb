// Transfer: temporary names, renames and writing in place.
#include "platform/linux/files/transfer.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "platform/linux/files/file_name.h"

namespace tellaxis::platform {

namespace {

constexpr int patienceWithDevices = 2000;  // milliseconds

/// What this process is, asked for once.
struct Process {
  std::string number = std::to_string(::getpid());
  uid_t user = ::geteuid();
  gid_t group = ::getegid();
  mode_t mask = ::umask(0);

  Process() { ::umask(mask); }
};

const Process& thisProcess() {
  static const Process process;
  return process;
}

/// A file that is written under a hidden name beside its target, and takes the target's name once it is whole.
/// Destroyed before that, it leaves nothing behind.
class NewFile {
 public:
  NewFile(std::string target, mode_t permissions) : target_(std::move(target)) {
    name_ = target_.substr(0, target_.size() - lastName(target_).size()) + ".tellaxis-" + thisProcess().number;
    file_ = create(permissions);
    if (!file_ && errno == EEXIST && ::unlink(name_.c_str()) == 0) file_ = create(permissions);
  }
  ~NewFile() {
    if (!file_ || done_) return;
    const int error = errno;
    ::unlink(name_.c_str());
    errno = error;
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  explicit operator bool() const { return static_cast<bool>(file_); }
  const Descriptor& file() const { return file_; }

  bool replaceTarget() { return done_ = ::rename(name_.c_str(), target_.c_str()) == 0; }
  bool becomeTarget() { return done_ = renameWithoutReplacing(name_, target_); }

 private:
  /// A name left by a process that died with this one's number is free to be taken.
  Descriptor create(mode_t permissions) const {
    return Descriptor(::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions));
  }

  std::string target_;
  std::string name_;
  Descriptor file_;
  bool done_ = false;
};

struct Target {
  std::string path;
  bool exists = false;
  struct stat status {};
};

/// Looks up what is to be replaced: case and links. A link that leads nowhere is a failure.
bool findTarget(const Paths& paths, Target& target) {
  target.exists = ::lstat(target.path.c_str(), &target.status) == 0;
  if (!target.exists) {
    if (errno != ENOENT && errno != ENOTDIR) return false;
    Spelling other = paths.otherSpelling(target.path);
    target.path = std::move(other.path);
    target.exists = other.exists && ::lstat(target.path.c_str(), &target.status) == 0;
  }
  if (!target.exists || !S_ISLNK(target.status.st_mode)) return true;
  char end[PATH_MAX];
  if (::realpath(target.path.c_str(), end) == nullptr) return false;
  target.path = end;
  return ::lstat(target.path.c_str(), &target.status) == 0;
}

/// Opens a device or pipe without waiting for its other end.
Descriptor openInPlace(const Target& target) {
  if (S_ISDIR(target.status.st_mode)) {
    errno = EISDIR;
    return {};
  }
  return Descriptor(::open(target.path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

/// Gives a file created with `replaced`'s permissions the rest of its likeness, the owner only where that is allowed.
bool resemble(const Descriptor& file, const struct stat& replaced) {
  const Process& process = thisProcess();
  const bool ours = replaced.st_uid == process.user && replaced.st_gid == process.group;
  if (!ours && ::fchown(file.number(), replaced.st_uid, replaced.st_gid) != 0 && errno != EPERM) return false;
  const bool asCreated = ours && (replaced.st_mode & (process.mask | 07000)) == 0;
  return asCreated || ::fchmod(file.number(), replaced.st_mode & 07777) == 0;
}

bool waitUntilWritable(const Descriptor& file) {
  pollfd waiting{.fd = file.number(), .events = POLLOUT, .revents = 0};
  if (::poll(&waiting, 1, patienceWithDevices) > 0) return true;
  errno = EAGAIN;
  return false;
}

}  // namespace

Descriptor openRegularFile(const std::string& native) {
  struct stat status {};
  Descriptor file(::open(native.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file || ::fstat(file.number(), &status) != 0) return {};
  if (S_ISREG(status.st_mode)) return file;
  errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  return {};
}

bool writeAll(const Descriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file.number(), bytes.data(), bytes.size());
    if (written >= 0)
      bytes.remove_prefix(static_cast<std::size_t>(written));
    else if (errno == EAGAIN ? !waitUntilWritable(file) : errno != EINTR)
      return false;
  }
  return true;
}

bool copyAll(const Descriptor& from, const Descriptor& to) {
  char buffer[64 * 1024];
  for (;;) {
    const ssize_t got = ::read(from.number(), buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    if (!writeAll(to, {buffer, static_cast<std::size_t>(got)})) return false;
  }
}

bool replaceContent(const Paths& paths, const std::string& path, Permissions permissions,
                    const std::function<bool(const Descriptor&)>& write) {
  Target target{.path = path};
  if (!findTarget(paths, target)) return false;
  if (target.exists && !S_ISREG(target.status.st_mode)) {
    const Descriptor device = openInPlace(target);
    return device && write(device);
  }
  const bool usual = permissions == Permissions::usual;
  NewFile file(target.path, !usual ? 0600 : target.exists ? target.status.st_mode & 0777 : 0666);
  if (!file) return false;
  if (usual && target.exists && !resemble(file.file(), target.status)) return false;
  return write(file.file()) && file.replaceTarget();
}

bool renameWithoutReplacing(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // The file system knows no such rename. A second name for the file is as safe; where there are none of those either,
  // only a look before the rename is left.
  if (::link(from.c_str(), to.c_str()) == 0) return ::unlink(from.c_str()) == 0;
  if (errno == EEXIST || errno == EXDEV || errno == ENOENT) return false;
  struct stat status {};
  if (::lstat(to.c_str(), &status) == 0) {
    errno = EEXIST;
    return false;
  }
  return errno == ENOENT && ::rename(from.c_str(), to.c_str()) == 0;
}

bool carryOver(const Descriptor& opened, const std::string& from, const std::string& to) {
  struct stat status {};
  if (::fstat(opened.number(), &status) != 0) return false;
  NewFile file(to, status.st_mode & 0777);
  if (!file || !resemble(file.file(), status) || !copyAll(opened, file.file())) return false;
  if (::fsync(file.file().number()) != 0 || !file.becomeTarget()) return false;
  if (::unlink(from.c_str()) == 0) return true;
  const int error = errno;
  ::unlink(to.c_str());
  errno = error;
  return false;
}

}  // namespace tellaxis::platform
