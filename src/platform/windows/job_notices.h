// Job notices: what ReadDirectoryChangesW tells of the folders where jobs are written.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/job_notices.h"
#include "platform/trace.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

/// The system does not say when a writer closes its file: a folder in which nothing changed for the quiet time counts
/// as written, also after a renaming.
class WindowsJobNotices final : public JobNotices {
 public:
  /// `whole` is called from a thread of its own, which sleeps until there is something to tell.
  WindowsJobNotices(std::function<void()> whole, Trace& trace);
  ~WindowsJobNotices() override;
  WindowsJobNotices(const WindowsJobNotices&) = delete;
  WindowsJobNotices& operator=(const WindowsJobNotices&) = delete;

  void watch(const std::vector<std::string>& paths) override;
  bool isWhole(std::string_view path) override;
  void waitFor(std::chrono::milliseconds duration) override;

 private:
  class Folder;

  void run();
  std::vector<std::unique_ptr<Folder>> takeFolders();

  std::function<void()> whole_;
  Trace& trace_;
  UniqueHandle wake_;
  std::mutex mutex_;
  std::condition_variable wholeFile_;
  std::uint64_t quietTimes_ = 0;
  std::vector<std::string> wanted_;  ///< folders to be watched from the thread's next turn on
  bool changed_ = false;
  bool stopping_ = false;
  std::thread thread_;
};

}  // namespace tellaxis::platform
