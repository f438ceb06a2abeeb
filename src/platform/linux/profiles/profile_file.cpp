// Profile file: an INI file on the disk, read whole while nobody writes to it.
#include "platform/linux/profiles/profile_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/kernel/same_time.h"
#include "platform/linux/kernel/uninterrupted.h"

namespace tellaxis::platform {

namespace {

/// No settings file comes near; a larger one is refused instead of filling the memory.
constexpr off_t largestFile = off_t{256} << 20;

/// True when another holds an exclusive lock, of whichever of the two kinds, on the file.
bool lockedElsewhere(int file) {
  struct flock wanted = {};
  wanted.l_type = F_RDLCK;
  wanted.l_whence = SEEK_SET;
  if (fcntl(file, F_OFD_GETLK, &wanted) == 0 && wanted.l_type != F_UNLCK) return true;
  if (flock(file, LOCK_SH | LOCK_NB) != 0) return errno == EWOULDBLOCK;
  flock(file, LOCK_UN);
  return false;
}

}  // namespace

Descriptor openForReading(int folder, const char* name, int moreFlags) {
  return Descriptor(untilUninterrupted(
      [&] { return openat(folder, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | moreFlags); }));
}

ProfileFile::ProfileFile(int folder, const char* name) : file_(openForReading(folder, name)), state_(open()) {}

ProfileFile::~ProfileFile() {
  // A child started meanwhile may share the descriptor: closing ours alone would leave the lease in force.
  if (leased_) fcntl(file_.number(), F_SETLEASE, F_UNLCK);
}

FileState ProfileFile::open() {
  const auto failure = [this](int error) {
    error_ = error;
    return FileState::failed;
  };
  if (!file_) {
    if (errno == ENOENT) return FileState::absent;
    if (errno == EWOULDBLOCK) return FileState::locked;  // a lease that its holder has yet to give up
    return failure(errno);
  }
  if (fstat(file_.number(), &facts_) != 0) return failure(errno);
  if (S_ISDIR(facts_.st_mode)) return failure(EISDIR);
  if (!S_ISREG(facts_.st_mode)) return failure(EINVAL);
  if (facts_.st_size > largestFile) return failure(EFBIG);
  if (lockedElsewhere(file_.number())) return FileState::locked;
  hold_ = holdOf(file_);
  leased_ = hold_ == Hold::free;
  const FileState state = readText();
  return state == FileState::read && hold_ == Hold::held ? FileState::openElsewhere : state;
}

FileState ProfileFile::readText() {
  const auto readInto = [this](char* bytes, std::size_t size) {
    return untilUninterrupted([&] { return ::read(file_.number(), bytes, size); });
  };
  ssize_t got = readInto(buffer_.data(), buffer_.size());
  if (got >= 0 && static_cast<std::size_t>(got) < buffer_.size()) {
    text_ = {buffer_.data(), static_cast<std::size_t>(got)};
    return FileState::read;
  }
  while (got > 0) {
    large_.append(buffer_.data(), static_cast<std::size_t>(got));
    if (large_.size() > static_cast<std::size_t>(largestFile)) break;
    got = readInto(buffer_.data(), buffer_.size());
  }
  text_ = large_;
  if (got == 0) return FileState::read;
  error_ = got < 0 ? errno : EFBIG;
  text_ = {};
  return FileState::failed;
}

bool ProfileFile::isAt(int folder, const char* name) const {
  if (leased_ && fcntl(file_.number(), F_GETLEASE) != F_RDLCK) return false;
  struct stat now = {};
  if (fstatat(folder, name, &now, AT_SYMLINK_NOFOLLOW) != 0) return state_ == FileState::absent && errno == ENOENT;
  return state_ == FileState::read && now.st_dev == facts_.st_dev && now.st_ino == facts_.st_ino &&
         now.st_size == facts_.st_size && sameTime(now.st_mtim, facts_.st_mtim) && now.st_mode == facts_.st_mode &&
         now.st_uid == facts_.st_uid && now.st_gid == facts_.st_gid;
}

}  // namespace tellaxis::platform
