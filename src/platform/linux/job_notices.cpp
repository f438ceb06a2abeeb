// Job notices: inotify, with a short memory of the files that were written lately.
#include "platform/linux/job_notices.h"

#include <linux/magic.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <system_error>
#include <utility>

#include "platform/linux/files/file_name.h"
#include "platform/linux/kernel/reason.h"
#include "platform/linux/kernel/uninterrupted.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::uint32_t writing = IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE;
constexpr std::uint32_t vanishing = IN_DELETE | IN_MOVED_FROM;

/// File systems whose files other computers write without this one's kernel being told.
constexpr std::uint32_t sharedFileSystems[] = {NFS_SUPER_MAGIC,       SMB_SUPER_MAGIC,       0xFE534D42 /* SMB 2 */,
                                               0xFF534D42 /* CIFS */, 0x65735546 /* FUSE */, V9FS_MAGIC};

bool givesNotices(const std::string& folder) {
  struct statfs status {};
  return ::statfs(folder.c_str(), &status) == 0 &&
         std::find(std::begin(sharedFileSystems), std::end(sharedFileSystems),
                   static_cast<std::uint32_t>(status.f_type)) == std::end(sharedFileSystems);
}

std::string folderOf(std::string_view path) { return std::string(path.substr(0, path.find_last_of("\\/") + 1)); }

/// Milliseconds for `poll` until `when`; -1, without end, where there is no such time.
int pollTime(std::optional<steady_clock::time_point> when) {
  if (!when) return -1;
  const auto left = std::chrono::ceil<milliseconds>(*when - steady_clock::now());
  return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, INT_MAX));
}

}  // namespace

LinuxJobNotices::LinuxJobNotices(Resolve resolve, std::function<void()> whole, Trace& trace)
    : resolve_(std::move(resolve)),
      whole_(std::move(whole)),
      trace_(trace),
      notices_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      wake_(WakeUp::make()) {
  if (!notices_ || !wake_) {
    trace_.failed("avvisi", "inotify", reasonOf(errno));
    return;
  }
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  try {
    thread_ = std::thread(&LinuxJobNotices::run, this);
  } catch (const std::system_error& failure) {
    trace_.failed("avvisi", "inotify", reasonOf(failure.code().value()));
  }
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

LinuxJobNotices::~LinuxJobNotices() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.wake();
  thread_.join();
}

void LinuxJobNotices::watch(const std::vector<std::string>& paths) {
  if (!thread_.joinable()) return;
  const std::lock_guard lock(mutex_);
  takeNotices();
  for (const auto& [watch, folder] : std::exchange(folders_, {})) ::inotify_rm_watch(notices_.number(), watch);
  written_.clear();
  for (const std::string& path : paths) addWatch(folderOf(path));
}

bool LinuxJobNotices::isWhole(std::string_view path) {
  if (!thread_.joinable()) return true;
  int files = 0;
  bool whole = true;
  {
    const std::lock_guard lock(mutex_);
    files = takeNotices();
    const auto found = written_.find(upperCase(path));
    whole = found == written_.end() || steady_clock::now() - found->second.last >= quietTime;
    // The thread may have been asleep without a time limit.
    if (!written_.empty()) wake_.wake();
  }
  tell(files);
  return whole;
}

void LinuxJobNotices::waitFor(milliseconds duration) {
  std::unique_lock lock(mutex_);
  wholeFile_.wait_for(lock, duration, [this, before = wholeFiles_] { return wholeFiles_ != before; });
}

void LinuxJobNotices::run() {
  for (;;) {
    std::optional<Instant> next;
    {
      const std::lock_guard lock(mutex_);
      if (stopping_) return;
      next = nextWhole();
    }
    pollfd waiting[] = {{.fd = notices_.number(), .events = POLLIN, .revents = 0},
                        {.fd = wake_.number(), .events = POLLIN, .revents = 0}};
    ::poll(waiting, 2, pollTime(next));
    wake_.forget();
    int files = 0;
    {
      const std::lock_guard lock(mutex_);
      files = takeNotices() + becomeWhole(steady_clock::now());
    }
    tell(files);
  }
}

void LinuxJobNotices::addWatch(const std::string& folder) {
  const auto native = resolve_(folder);
  if (!native || !givesNotices(*native)) return;
  const int watch =
      ::inotify_add_watch(notices_.number(), native->c_str(), writing | vanishing | IN_MOVED_TO | IN_ONLYDIR);
  if (watch < 0)
    trace_.failed("avvisi", folder, reasonOf(errno));
  else
    folders_[watch] = upperCase(folder);
}

/// Takes in what the system has to tell; how many files have become whole by it.
int LinuxJobNotices::takeNotices() {
  constexpr std::size_t size = 16 * 1024;
  alignas(inotify_event) char buffer[size];
  int files = 0;
  for (;;) {
    const ssize_t got = untilUninterrupted([&] { return ::read(notices_.number(), buffer, size); });
    if (got <= 0) return files;
    for (ssize_t position = 0; position < got;) {
      const auto* notice = reinterpret_cast<const inotify_event*>(buffer + position);
      files += take(*notice);
      position += static_cast<ssize_t>(sizeof(inotify_event) + notice->len);
    }
  }
}

int LinuxJobNotices::take(const inotify_event& notice) {
  const auto folder = folders_.find(notice.wd);
  if (folder == folders_.end() || notice.len == 0 || (notice.mask & IN_ISDIR) != 0) return 0;
  const std::string path = folder->second + upperCase(textOfName(notice.name).value_or(notice.name));
  if ((notice.mask & (vanishing | IN_MOVED_TO)) != 0) written_.erase(path);
  if ((notice.mask & writing) != 0)
    written_.insert_or_assign(path, Written{steady_clock::now(), (notice.mask & IN_CLOSE_WRITE) != 0});
  return (notice.mask & IN_MOVED_TO) != 0 ? 1 : 0;
}

/// Forgets the files that have been quiet for long enough; how many of them were closed.
int LinuxJobNotices::becomeWhole(Instant now) {
  int files = 0;
  std::erase_if(written_, [&](const auto& file) {
    const bool quiet = now - file.second.last >= quietTime;
    if (quiet && file.second.closed) ++files;
    return quiet;
  });
  return files;
}

std::optional<LinuxJobNotices::Instant> LinuxJobNotices::nextWhole() const {
  std::optional<Instant> next;
  for (const auto& [path, file] : written_)
    if (!next || file.last + quietTime < *next) next = file.last + quietTime;
  return next;
}

void LinuxJobNotices::tell(int files) {
  if (files == 0) return;
  {
    const std::lock_guard lock(mutex_);
    wholeFiles_ += static_cast<std::uint64_t>(files);
  }
  wholeFile_.notify_all();
  whole_();
}

}  // namespace tellaxis::platform
