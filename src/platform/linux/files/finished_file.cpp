// Finished file: what the system says of writers, and looks where it says nothing.
#include "platform/linux/files/finished_file.h"

#include <fcntl.h>

#include <cerrno>
#include <thread>

#include "platform/linux/kernel/uninterrupted.h"

namespace tellaxis::platform {

namespace {

constexpr std::chrono::milliseconds betweenLooks{50};

}  // namespace

Descriptor openRegularFile(int folder, const char* name, LastLink link) {
  struct stat status {};
  return openRegularFile(folder, name, status, link);
}

Descriptor openRegularFile(int folder, const char* name, struct stat& status, LastLink link) {
  const int flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | (link == LastLink::refused ? O_NOFOLLOW : 0);
  Descriptor file(untilUninterrupted([&] { return ::openat(folder, name, flags); }));
  // Somebody who shares the file over the network may have it to himself for as long as he wants.
  if (!file && errno == EWOULDBLOCK) errno = ETXTBSY;
  if (!file || ::fstat(file.number(), &status) != 0) return {};
  if (S_ISREG(status.st_mode)) return file;
  errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  return {};
}

int whyUnfinished(Settling& settling, Hold hold, const std::string& path, const struct stat& status) {
  if (hold != Hold::unknown) return hold == Hold::held ? ETXTBSY : 0;
  return settling.isSettled(path, status) ? 0 : EINPROGRESS;
}

Descriptor openFinished(Settling& settling, const std::string& path, std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    // Opened anew for every look: over a network only that asks the other computer.
    struct stat status {};
    Descriptor file = openRegularFile(AT_FDCWD, path.c_str(), status);
    if (!file) return file;
    const int reason = whyUnfinished(settling, holdOf(file), path, status);
    if (reason == 0) return file;
    if (reason != EINPROGRESS || std::chrono::steady_clock::now() >= deadline) {
      errno = reason;
      return {};
    }
    std::this_thread::sleep_for(betweenLooks);
  }
}

}  // namespace tellaxis::platform
