// Instance: one copy a main folder, by a lock on a hidden file of it.
#include "platform/instance.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "platform/linux/files/stale_files.h"
#include "platform/linux/kernel/descriptor.h"
#include "platform/linux/kernel/lock_holder.h"
#include "platform/linux/kernel/reason.h"
#include "platform/linux/kernel/uninterrupted.h"
#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

constexpr std::string_view lockName = "/.tellaxis.lock";

class FileLock : public InstanceLock {
 public:
  explicit FileLock(Descriptor file) : file_(std::move(file)) {}

 private:
  Descriptor file_;
};

std::string lockFileOf(std::string_view mainFolder) { return std::string(mainFolder).append(lockName); }

/// The lock file, open for writing: file systems of the network lock only such. One that is made here belongs to the
/// folder's owner, so that a copy started by another user does not lock the owner out for good.
Descriptor openLock(const std::string& mainFolder) {
  const std::string name = lockFileOf(mainFolder);
  constexpr int flags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  for (int attempt = 0; attempt < 2; ++attempt) {
    if (Descriptor existing(::open(name.c_str(), flags)); existing || errno != ENOENT) return existing;
    Descriptor created(::open(name.c_str(), flags | O_CREAT | O_EXCL, 0660));
    struct stat folder {};
    if (created && ::geteuid() == 0 && ::stat(mainFolder.c_str(), &folder) == 0 &&
        ::fchown(created.number(), folder.st_uid, folder.st_gid) != 0)
      return {};
    if (created || errno != EEXIST) return created;
  }
  return {};
}

/// False, with `errno`, where the file cannot be locked.
bool lock(const Descriptor& file) {
  return file && untilUninterrupted([&] { return ::flock(file.number(), LOCK_EX | LOCK_NB); }) == 0;
}

}  // namespace

std::unique_ptr<InstanceLock> lockMainFolder(std::string_view mainFolder) {
  Descriptor file = openLock(std::string(mainFolder));
  if (!lock(file)) return nullptr;
  removeStaleFiles(std::string(mainFolder));
  return std::make_unique<FileLock>(std::move(file));
}

std::string whyUnlockable(std::string_view mainFolder) {
  const Descriptor file = openLock(std::string(mainFolder));
  if (lock(file) || (file && errno == EWOULDBLOCK)) return {};
  const std::string reason = reasonOf(errno);
  return lockFileOf(mainFolder) + ": " + utf8FromCodePage(reason);
}

std::uint32_t thisProcess() { return static_cast<std::uint32_t>(::getpid()); }

std::optional<std::uint32_t> servingProcess(std::string_view mainFolder) {
  struct stat file {};
  if (::lstat(lockFileOf(mainFolder).c_str(), &file) != 0) return std::nullopt;
  const auto holder = lockHolderOfAnyUser(file);
  return holder ? std::optional(static_cast<std::uint32_t>(*holder)) : std::nullopt;
}

bool requestEnd(std::string_view mainFolder) {
  const Descriptor file = openLock(std::string(mainFolder));
  const auto holder = file ? lockHolder(file.number()) : std::nullopt;
  return holder && ::kill(*holder, SIGTERM) == 0;
}

}  // namespace tellaxis::platform
