// Settling: one look a file, begun anew when the file has changed.
#include "platform/linux/files/settling.h"

#include "platform/linux/kernel/same_time.h"

namespace tellaxis::platform {

namespace {

constexpr std::size_t mostLooks = 4096;
constexpr std::chrono::minutes worthKeeping{1};

}  // namespace

bool Settling::isSettled(const std::string& path, const struct stat& status) {
  const std::lock_guard lock(mutex_);
  const Moment now = std::chrono::steady_clock::now();
  makeRoom(now);
  Look& look = looks_[path];
  const bool same = look.last != Moment() && look.size == status.st_size && sameTime(look.changed, status.st_mtim);
  if (!same) look = {.size = status.st_size, .changed = status.st_mtim, .since = now, .last = now};
  look.last = now;
  return now - look.since >= time;
}

void Settling::accept(const std::string& path, const struct stat& status) {
  const std::lock_guard lock(mutex_);
  const Moment now = std::chrono::steady_clock::now();
  makeRoom(now);
  looks_[path] = {.size = status.st_size, .changed = status.st_mtim, .since = now - time, .last = now};
}

void Settling::forget(const std::string& path) {
  const std::lock_guard lock(mutex_);
  looks_.erase(path);
}

void Settling::makeRoom(Moment now) {
  if (looks_.size() < mostLooks) return;
  std::erase_if(looks_, [now](const auto& entry) { return now - entry.second.last > worthKeeping; });
  if (looks_.size() >= mostLooks) looks_.clear();
}

}  // namespace tellaxis::platform
