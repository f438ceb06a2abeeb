// Reaper: a thread that polls the descriptors of all children.
#include "platform/linux/processes/reaper.h"

#include <fcntl.h>
#include <poll.h>
// This header forgets to say that its functions are C.
extern "C" {
#include <sys/pidfd.h>
}
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <system_error>

namespace tellaxis::platform {

Reaper::~Reaper() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.wake();
  thread_.join();
}

void Reaper::add(pid_t process) {
  Descriptor watch(::pidfd_open(process, 0));
  {
    const std::lock_guard lock(mutex_);
    if (!watch || !begin()) return;
    children_.insert_or_assign(process, std::move(watch));
  }
  wake_.wake();
}

Descriptor Reaper::watch(pid_t process) {
  const std::lock_guard lock(mutex_);
  const auto child = children_.find(process);
  return child == children_.end() ? Descriptor() : Descriptor(::fcntl(child->second.number(), F_DUPFD_CLOEXEC, 0));
}

bool Reaper::begin() {
  if (thread_.joinable()) return true;
  wake_ = WakeUp::make();
  if (!wake_) return false;
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  try {
    thread_ = std::thread(&Reaper::run, this);
  } catch (const std::system_error&) {
  }
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return thread_.joinable();
}

void Reaper::run() {
  for (;;) {
    const std::vector<Child> living = children();
    std::vector<pollfd> waiting{{.fd = wake_.number(), .events = POLLIN, .revents = 0}};
    for (const Child& child : living) waiting.push_back({.fd = child.watch, .events = POLLIN, .revents = 0});
    ::poll(waiting.data(), waiting.size(), -1);
    if (waiting.front().revents != 0) wake_.forget();
    for (std::size_t i = 0; i < living.size(); ++i)
      if (waiting[i + 1].revents != 0) release(living[i]);
    const std::lock_guard lock(mutex_);
    if (stopping_) return;
  }
}

std::vector<Reaper::Child> Reaper::children() {
  const std::lock_guard lock(mutex_);
  std::vector<Child> living;
  for (const auto& [process, watch] : children_) living.push_back({process, watch.number()});
  return living;
}

/// The number of a child is free for others only once it was waited for, so the entry goes first.
void Reaper::release(const Child& child) {
  Descriptor watch;
  {
    const std::lock_guard lock(mutex_);
    const auto entry = children_.find(child.process);
    watch = std::move(entry->second);
    children_.erase(entry);
  }
  siginfo_t how{};
  while (::waitid(P_PIDFD, static_cast<id_t>(watch.number()), &how, WEXITED) != 0 && errno == EINTR) {
  }
}

}  // namespace tellaxis::platform
