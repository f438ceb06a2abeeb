// New file: temporary names and renames.
#include "platform/linux/files/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/linux/files/file_name.h"
#include "platform/linux/kernel/uninterrupted.h"

namespace tellaxis::platform {

namespace {

/// Always the same in a folder: what a process that died with this one's number left is replaced.
std::string temporaryNameBeside(std::string_view target) {
  static const std::string name = ".tellaxis-" + std::to_string(::getpid());
  return std::string(target.substr(0, folderLength(target))) + name;
}

/// The file gets a second name and then loses its first one; should that fail, the second goes again.
bool renameByLink(const std::string& from, const std::string& to) {
  if (::link(from.c_str(), to.c_str()) != 0) return false;
  if (::unlink(from.c_str()) == 0 || errno == ENOENT) return true;
  const int error = errno;
  ::unlink(to.c_str());
  errno = error;
  return false;
}

}  // namespace

NewFile::NewFile(std::string target, mode_t permissions)
    : target_(std::move(target)), name_(temporaryNameBeside(target_)), file_(create(permissions)) {
  if (!file_ && errno == EEXIST && ::unlink(name_.c_str()) == 0) file_ = create(permissions);
}

NewFile::~NewFile() {
  if (!file_ || done_) return;
  const int error = errno;
  ::unlink(name_.c_str());
  errno = error;
}

Descriptor NewFile::create(mode_t permissions) const {
  return Descriptor(untilUninterrupted(
      [&] { return ::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, permissions); }));
}

bool NewFile::replaceTarget() { return done_ = ::rename(name_.c_str(), target_.c_str()) == 0; }

bool NewFile::becomeTarget() { return done_ = renameWithoutReplacing(name_, target_); }

bool renameWithoutReplacing(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // The file system knows no such rename. A second name for the file is as safe; where there are none of those either,
  // only a look before the rename is left.
  struct stat status {};
  if (renameByLink(from, to)) return true;
  if (::lstat(to.c_str(), &status) == 0) {
    errno = EEXIST;
    return false;
  }
  return errno == ENOENT && ::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace tellaxis::platform
