// Job notices: one overlapped request a folder, waited for by one thread.
#include "platform/windows/job_notices.h"

#include <windows.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace tellaxis::platform {

namespace {

constexpr DWORD changes = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_SIZE | FILE_NOTIFY_CHANGE_LAST_WRITE;
constexpr DWORD quietMilliseconds = static_cast<DWORD>(quietTime.count());

std::uint64_t numberOf(const FILETIME& time) {
  return (static_cast<std::uint64_t>(time.dwHighDateTime) << 32U) | time.dwLowDateTime;
}

}  // namespace

/// A watched folder with the request that is under way. The buffer's content is not looked at: any change counts.
class WindowsJobNotices::Folder {
 public:
  explicit Folder(const std::wstring& path)
      : folder_(
            owned(CreateFileW(path.c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                              nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OVERLAPPED, nullptr))),
        event_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}

  ~Folder() {
    if (!pending_) return;
    CancelIo(folder_.get());
    DWORD ignored = 0;
    GetOverlappedResult(folder_.get(), &request_, &ignored, TRUE);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  bool ask() {
    ResetEvent(event_.get());
    request_ = {};
    request_.hEvent = event_.get();
    pending_ = folder_ && ReadDirectoryChangesW(folder_.get(), buffer_, sizeof buffer_, FALSE, changes, nullptr,
                                                &request_, nullptr);
    return pending_;
  }
  HANDLE event() const { return event_.get(); }

 private:
  UniqueHandle folder_;
  UniqueHandle event_;
  OVERLAPPED request_ = {};
  bool pending_ = false;
  alignas(DWORD) char buffer_[4096] = {};
};

WindowsJobNotices::WindowsJobNotices(std::function<void()> whole, Trace& trace)
    : whole_(std::move(whole)), trace_(trace), wake_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
  if (!wake_) {
    failed(trace_, "avvisi", "CreateEvent");
    return;
  }
  try {
    thread_ = std::thread(&WindowsJobNotices::run, this);
  } catch (const std::system_error& failure) {
    failed(trace_, "avvisi", "thread", failure.what());
  }
}

WindowsJobNotices::~WindowsJobNotices() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  SetEvent(wake_.get());
  thread_.join();
}

void WindowsJobNotices::watch(const std::vector<std::string>& paths) {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    wanted_.clear();
    for (const std::string& path : paths) wanted_.push_back(path.substr(0, path.find_last_of("\\/") + 1));
    changed_ = true;
  }
  SetEvent(wake_.get());
}

bool WindowsJobNotices::isWhole(std::string_view path) {
  WIN32_FILE_ATTRIBUTE_DATA facts;
  if (!GetFileAttributesExW(wide(path).c_str(), GetFileExInfoStandard, &facts)) return true;
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  constexpr std::uint64_t unitsPerMillisecond = 10'000;
  const std::uint64_t written = numberOf(facts.ftLastWriteTime);
  // A time in the future comes from another computer's clock and says nothing.
  return written > numberOf(now) || numberOf(now) - written >= quietMilliseconds * unitsPerMillisecond;
}

void WindowsJobNotices::waitFor(std::chrono::milliseconds duration) {
  std::unique_lock lock(mutex_);
  wholeFile_.wait_for(lock, duration, [this, before = quietTimes_] { return quietTimes_ != before; });
}

/// The folders that are to be watched now, each with a request under way; those that give no notices are left out.
std::vector<std::unique_ptr<WindowsJobNotices::Folder>> WindowsJobNotices::takeFolders() {
  std::vector<std::unique_ptr<Folder>> folders;
  for (const std::string& path : wanted_) {
    auto folder = std::make_unique<Folder>(wide(path));
    if (!folder->ask())
      failed(trace_, "avvisi", path);
    else if (folders.size() < MAXIMUM_WAIT_OBJECTS - 1)
      folders.push_back(std::move(folder));
  }
  return folders;
}

void WindowsJobNotices::run() {
  std::vector<std::unique_ptr<Folder>> folders;
  bool restless = false;
  for (;;) {
    {
      const std::lock_guard lock(mutex_);
      if (stopping_) return;
      if (std::exchange(changed_, false)) folders = takeFolders();
    }
    std::vector<HANDLE> events{wake_.get()};
    for (const auto& folder : folders) events.push_back(folder->event());
    const DWORD woken = WaitForMultipleObjects(static_cast<DWORD>(events.size()), events.data(), FALSE,
                                               restless ? quietMilliseconds : INFINITE);
    if (woken == WAIT_TIMEOUT) {
      restless = false;
      {
        const std::lock_guard lock(mutex_);
        ++quietTimes_;
      }
      wholeFile_.notify_all();
      whole_();
    } else if (woken > WAIT_OBJECT_0 && woken < WAIT_OBJECT_0 + events.size()) {
      restless = true;
      const auto folder = folders.begin() + static_cast<std::ptrdiff_t>(woken - WAIT_OBJECT_0 - 1);
      if (!(*folder)->ask()) folders.erase(folder);
    }
  }
}

}  // namespace tellaxis::platform
