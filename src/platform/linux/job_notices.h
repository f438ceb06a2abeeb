// Job notices: what inotify tells of the folders where jobs are written.
#pragma once

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "platform/job_notices.h"
#include "platform/linux/kernel/descriptor.h"
#include "platform/linux/kernel/wake_up.h"
#include "platform/trace.h"

struct inotify_event;

namespace tellaxis::platform {

class LinuxJobNotices final : public JobNotices {
 public:
  /// The native path of a path of the program; nothing for one that cannot be.
  using Resolve = std::function<std::optional<std::string>(std::string_view path)>;

  /// `whole` is called from a thread of its own, which sleeps until there is something to tell.
  LinuxJobNotices(Resolve resolve, std::function<void()> whole, Trace& trace);
  ~LinuxJobNotices() override;
  LinuxJobNotices(const LinuxJobNotices&) = delete;
  LinuxJobNotices& operator=(const LinuxJobNotices&) = delete;

  void watch(const std::vector<std::string>& paths) override;
  bool isWhole(std::string_view path) override;
  void waitFor(std::chrono::milliseconds duration) override;

 private:
  using Instant = std::chrono::steady_clock::time_point;

  /// A file that was written lately.
  struct Written {
    Instant last;
    bool closed = false;
  };

  void run();
  void addWatch(const std::string& folder);
  int takeNotices();
  int take(const inotify_event& notice);
  int becomeWhole(Instant now);
  std::optional<Instant> nextWhole() const;
  void tell(int files);

  Resolve resolve_;
  std::function<void()> whole_;
  Trace& trace_;
  Descriptor notices_;
  WakeUp wake_;
  std::mutex mutex_;
  std::condition_variable wholeFile_;
  std::uint64_t wholeFiles_ = 0;
  std::map<int, std::string> folders_;      ///< by watch: in capitals, with its ending backslash
  std::map<std::string, Written> written_;  ///< by path in capitals
  bool stopping_ = false;
  std::thread thread_;
};

}  // namespace tellaxis::platform
