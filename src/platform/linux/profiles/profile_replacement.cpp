// Profile replacement: a new text in the place of an INI file, whole or not at all, one writer a folder at a time.
#include "platform/linux/profiles/profile_replacement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>

#include "platform/linux/kernel/timed_write.h"
#include "platform/linux/kernel/uninterrupted.h"

namespace tellaxis::platform {

namespace {

constexpr int mostLinks = 40;

/// Hidden, and always the same: what a killed writer left is replaced by the next one.
constexpr const char* temporaryName = ".profilo-nuovo.tmp";

/// Gives `file` the owner, group and mode in `facts`. Where only the owner cannot be kept, the group still gives the
/// others their access.
bool copyOwnerAndMode(int file, const struct stat& facts) {
  struct stat mine = {};
  if (fstat(file, &mine) != 0) return false;
  if (mine.st_uid != facts.st_uid || mine.st_gid != facts.st_gid)
    if (fchown(file, facts.st_uid, facts.st_gid) != 0 && fchown(file, static_cast<uid_t>(-1), facts.st_gid) != 0)
      return false;
  return fchmod(file, facts.st_mode & 07777) == 0;
}

/// A file under the temporary name, removed again unless it took the place of another.
class TemporaryFile {
 public:
  TemporaryFile(int folder, mode_t mode) : folder_(folder) {
    unlinkat(folder, temporaryName, 0);
    file_ = Descriptor(untilUninterrupted(
        [&] { return openat(folder, temporaryName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode); }));
    exists_ = static_cast<bool>(file_);
    if (exists_) inode_ = inode();
  }
  ~TemporaryFile() {
    if (exists_) unlinkat(folder_, temporaryName, 0);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  bool exists() const { return exists_; }

  /// Gives it a text, and the owner and mode in `facts` unless that is null, safe on the disk, and closes it.
  bool fill(std::string_view text, const struct stat* facts) {
    const int file = file_.number();
    const bool filled = (facts == nullptr || copyOwnerAndMode(file, *facts)) && writeAll(file_, text) &&
                        untilUninterrupted([&] { return fsync(file); }) == 0;
    if (filled) file_ = Descriptor();
    return filled;
  }

  /// Takes the place of `name` where that still is what `current` read; what came there meanwhile stays.
  Replaced replace(const char* name, const ProfileFile& current) {
    if (!current.isAt(folder_, name)) return Replaced::changedMeanwhile;
    if (current.state() == FileState::absent) return renameTo(name, RENAME_NOREPLACE);
    if (!swapWith(name)) return errno == EINVAL ? renameTo(name, 0) : outcomeOf(errno);
    if (current.isAt(folder_, temporaryName)) return Replaced::done;
    putBack(name);
    return Replaced::changedMeanwhile;
  }

 private:
  static Replaced outcomeOf(int error) {
    return error == ENOENT || error == EEXIST ? Replaced::changedMeanwhile : Replaced::failed;
  }

  bool swapWith(const char* name) const {
    return renameat2(folder_, temporaryName, folder_, name, RENAME_EXCHANGE) == 0;
  }

  Replaced renameTo(const char* name, unsigned flags) {
    int result = renameat2(folder_, temporaryName, folder_, name, flags);
    if (result != 0 && errno == EINVAL) result = renameat(folder_, temporaryName, folder_, name);
    if (result != 0) return outcomeOf(errno);
    exists_ = false;
    return Replaced::done;
  }

  ino_t inode() const {
    struct stat facts = {};
    return fstatat(folder_, temporaryName, &facts, AT_SYMLINK_NOFOLLOW) == 0 ? facts.st_ino : 0;
  }

  /// Undoes a swap that brought out a file newer than the one that was read. Should yet another have taken the place
  /// meanwhile, that one goes back in turn, until the file coming out is the one that was put in.
  void putBack(const char* name) const {
    ino_t expected = inode_;
    for (ino_t next = inode(); swapWith(name) && inode() != expected; next = inode()) expected = next;
  }

  int folder_;
  Descriptor file_;
  ino_t inode_ = 0;
  bool exists_ = false;
};

}  // namespace

FolderLock::FolderLock(const std::string& folder)
    : folder_(openForReading(AT_FDCWD, folder.c_str(), O_DIRECTORY)), error_(folder_ ? 0 : errno) {
  if (folder_ && flock(folder_.number(), LOCK_EX | LOCK_NB) != 0) error_ = errno;
}

FolderLock::~FolderLock() {
  if (error_ == 0) flock(folder_.number(), LOCK_UN);  // a child started meanwhile may share the descriptor
}

Replaced replaceFile(const FolderLock& lock, const char* name, const ProfileFile& current, std::string_view text,
                     int& error) {
  const auto failure = [&error] {
    error = errno;
    return Replaced::failed;
  };
  const bool exists = current.state() == FileState::read;
  if (exists && faccessat(lock.folder(), name, W_OK, AT_EACCESS) != 0) return failure();
  TemporaryFile fresh(lock.folder(), exists ? 0600 : 0666);
  if (!fresh.exists() || !fresh.fill(text, exists ? &current.facts() : nullptr)) return failure();
  const Replaced result = fresh.replace(name, current);
  if (result == Replaced::failed) return failure();
  return result;
}

std::optional<std::string> linkTarget(std::string path) {
  std::array<char, PATH_MAX> target;
  for (int links = 0; links <= mostLinks; ++links) {
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    if (length < 0) return path;
    const std::string_view next(target.data(), static_cast<std::size_t>(length));
    const std::size_t folderEnd = next.starts_with('/') ? 0 : path.rfind('/') + 1;
    path.replace(folderEnd, std::string::npos, next);
  }
  return std::nullopt;
}

}  // namespace tellaxis::platform
