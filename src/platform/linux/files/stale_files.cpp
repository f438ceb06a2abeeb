// Stale files: by their names, their age, and the processes that run.
#include "platform/linux/files/stale_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <ctime>
#include <memory>
#include <string_view>

namespace tellaxis::platform {

namespace {

constexpr std::string_view beginning = ".tellaxis-";

/// True for the name of an unfinished file whose process is no more.
bool isAbandoned(std::string_view name) {
  if (!name.starts_with(beginning)) return false;
  name.remove_prefix(beginning.size());
  pid_t process = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
  if (error != std::errc{} || end == name.data() || process <= 0) return false;
  return ::kill(process, 0) != 0 && errno == ESRCH;
}

struct FolderCloser {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

}  // namespace

void removeStaleFiles(const std::string& folder, std::chrono::seconds age) {
  const std::unique_ptr<DIR, FolderCloser> opened(::opendir(folder.empty() ? "." : folder.c_str()));
  if (!opened) return;
  const int descriptor = ::dirfd(opened.get());
  while (const dirent* entry = ::readdir(opened.get())) {
    struct stat status {};
    if (!isAbandoned(entry->d_name) || ::fstatat(descriptor, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
      continue;
    if (S_ISREG(status.st_mode) && std::time(nullptr) - status.st_mtime >= age.count())
      ::unlinkat(descriptor, entry->d_name, 0);
  }
}

}  // namespace tellaxis::platform
