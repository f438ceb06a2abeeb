// Instance: one copy a main folder, by a lock on a hidden file of it.
#include "platform/instance.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>

#include <cerrno>
#include <string>
#include <utility>

#include "platform/linux/kernel/descriptor.h"
#include "platform/linux/kernel/lock_holder.h"

namespace tellaxis::platform {

namespace {

constexpr std::string_view lockName = "/.tellaxis.lock";

class FileLock : public InstanceLock {
 public:
  explicit FileLock(Descriptor file) : file_(std::move(file)) {}

 private:
  Descriptor file_;
};

/// The lock file; where the folder is closed to writing, the folder itself, which then nobody else locks either.
Descriptor openLock(const std::string& mainFolder) {
  const std::string name = mainFolder + std::string(lockName);
  constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  for (int attempt = 0; attempt < 2; ++attempt) {
    if (Descriptor existing(::open(name.c_str(), flags)); existing) return existing;
    if (Descriptor created(::open(name.c_str(), flags | O_CREAT | O_EXCL, 0644)); created) return created;
  }
  return Descriptor(::open(mainFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace

std::unique_ptr<InstanceLock> lockMainFolder(std::string_view mainFolder) {
  Descriptor file = openLock(std::string(mainFolder));
  if (file && ::flock(file.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return nullptr;
  return std::make_unique<FileLock>(std::move(file));
}

bool requestEnd(std::string_view mainFolder) {
  const Descriptor file = openLock(std::string(mainFolder));
  const auto holder = file ? lockHolder(file.number()) : std::nullopt;
  return holder && ::kill(*holder, SIGTERM) == 0;
}

}  // namespace tellaxis::platform
