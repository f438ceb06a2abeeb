// Resident: one copy a main folder by a lock on a hidden file of it, and signals as the wish to stop.
#include "platform/resident.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdint>
#include <utility>

#include "platform/linux/descriptor.h"

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

constexpr int stopSignals[] = {SIGINT, SIGTERM, SIGHUP};

int stopEvent = -1;
struct sigaction formerActions[std::size(stopSignals)];

/// Sets the mark, and leaves the next signal to its usual effect.
void requestStop(int) {
  const int error = errno;
  for (const int stopSignal : stopSignals) ::signal(stopSignal, SIG_DFL);
  ::eventfd_write(stopEvent, 1);
  errno = error;
}

}  // namespace

std::vector<std::string> programArguments(int count, char** words) { return {words + 1, words + count}; }

std::string programFolder() {
  char path[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
  const std::string_view program(path, length > 0 ? static_cast<std::size_t>(length) : 0);
  const std::size_t slash = program.rfind('/');
  if (slash == std::string_view::npos) return ".";
  return std::string(program.substr(0, std::max<std::size_t>(slash, 1)));
}

std::unique_ptr<InstanceLock> lockMainFolder(std::string_view mainFolder) {
  Descriptor file = openLock(std::string(mainFolder));
  if (file && ::flock(file.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return nullptr;
  return std::make_unique<FileLock>(std::move(file));
}

StopRequest::StopRequest() {
  stopEvent = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  struct sigaction action {};
  action.sa_handler = requestStop;
  action.sa_flags = SA_RESTART;
  for (const int stopSignal : stopSignals) sigaddset(&action.sa_mask, stopSignal);
  for (std::size_t i = 0; i < std::size(stopSignals); ++i) {
    ::sigaction(stopSignals[i], nullptr, &formerActions[i]);
    // A hang-up that was ignored on purpose (nohup) stays ignored.
    const bool ignored = stopSignals[i] == SIGHUP && formerActions[i].sa_handler == SIG_IGN;
    if (!ignored) ::sigaction(stopSignals[i], &action, nullptr);
  }
}

StopRequest::~StopRequest() {
  for (std::size_t i = 0; i < std::size(stopSignals); ++i) ::sigaction(stopSignals[i], &formerActions[i], nullptr);
  ::close(std::exchange(stopEvent, -1));
}

bool StopRequest::waitFor(std::chrono::milliseconds duration) {
  const auto end = std::chrono::steady_clock::now() + duration;
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    pollfd waiting{.fd = stopEvent, .events = POLLIN, .revents = 0};
    const int ready = ::poll(&waiting, 1, static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, INT_MAX)));
    if (ready >= 0 || errno != EINTR) return ready > 0;
  }
}

}  // namespace tellaxis::platform
