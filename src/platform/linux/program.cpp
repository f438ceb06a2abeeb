// Program: its arguments and folder as the kernel tells them, and signals as requests to stop.
#include "platform/program.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdint>
#include <string_view>
#include <utility>

namespace tellaxis::platform {

namespace {

constexpr int stopSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t stopAsked = 0;
int stopEvent = -1;
int wakeEvent = -1;
struct sigaction formerActions[std::size(stopSignals)];

/// Sets the mark, and leaves the next signal to its usual effect.
void requestStop(int) {
  const int error = errno;
  for (const int stopSignal : stopSignals) ::signal(stopSignal, SIG_DFL);
  stopAsked = 1;
  ::eventfd_write(stopEvent, 1);
  errno = error;
}

}  // namespace

std::vector<std::string> programArguments(int count, char** words) {
  // Settings hold passwords, documents hold what people bought: nothing that is made from here on is for everybody.
  // What the group may do is said by whoever starts the program: with the usual mask it reads, with 0002 it writes as
  // well.
  ::umask(::umask(0) | 0007);
  return {words + 1, words + count};
}

bool stopWasAsked() { return stopAsked != 0; }

std::string programFolder() {
  char path[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
  const std::string_view program(path, length > 0 ? static_cast<std::size_t>(length) : 0);
  const std::size_t slash = program.rfind('/');
  if (slash == std::string_view::npos) return ".";
  return std::string(program.substr(0, std::max<std::size_t>(slash, 1)));
}

StopRequest::StopRequest() {
  stopAsked = 0;
  stopEvent = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  wakeEvent = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
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
  ::close(std::exchange(wakeEvent, -1));
}

/// Another process asks by a signal.
void StopRequest::heed(std::string_view /*mainFolder*/) {}

bool StopRequest::waitFor(std::chrono::milliseconds duration) {
  const auto end = std::chrono::steady_clock::now() + duration;
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    pollfd waiting[] = {{.fd = stopEvent, .events = POLLIN, .revents = 0},
                        {.fd = wakeEvent, .events = POLLIN, .revents = 0}};
    const int ready = ::poll(waiting, 2, static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, INT_MAX)));
    if (ready < 0 && errno == EINTR) continue;
    eventfd_t ignored = 0;
    if (waiting[1].revents != 0) ::eventfd_read(wakeEvent, &ignored);
    return waiting[0].revents != 0;
  }
}

bool StopRequest::asked() const { return stopAsked != 0; }

void StopRequest::wake() { ::eventfd_write(wakeEvent, 1); }

}  // namespace tellaxis::platform
