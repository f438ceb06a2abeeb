// Lock holder: the system's list of locks, and what the processes in it have open.
#include "platform/linux/kernel/lock_holder.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>

namespace tellaxis::platform {

namespace {

/// A line such as "7: FLOCK  ADVISORY  WRITE 4711 08:01:1234 0 EOF"; waiting ones begin "7: -> FLOCK".
struct LockLine {
  std::string kind;
  pid_t process = 0;
  std::string file;  ///< device and inode
};

std::optional<LockLine> lockFrom(const std::string& text) {
  std::istringstream words(text);
  std::string number;
  std::string mode;
  std::string access;
  LockLine line;
  if (words >> number >> line.kind >> mode >> access >> line.process >> line.file) return line;
  return std::nullopt;
}

enum class Opened : std::uint8_t { no, yes, unknown };

/// Whether a process has this file open; unknown where its files may not be looked at. The list's device numbers are
/// not those of `stat` on every file system, so the process's own files are looked at.
Opened hasOpen(pid_t process, const struct stat& file) {
  std::error_code failure;
  const std::filesystem::directory_iterator files("/proc/" + std::to_string(process) + "/fd", failure);
  if (failure == std::errc::permission_denied) return Opened::unknown;
  for (const auto& entry : files) {
    struct stat opened = {};
    if (stat(entry.path().c_str(), &opened) == 0 && opened.st_dev == file.st_dev && opened.st_ino == file.st_ino)
      return Opened::yes;
  }
  return Opened::no;
}

std::optional<pid_t> findHolder(const struct stat& file, bool ofAnyUser) {
  const std::string inode = ":" + std::to_string(file.st_ino);
  std::ifstream locks("/proc/locks");
  for (std::string text; std::getline(locks, text);) {
    const auto line = lockFrom(text);
    if (!line || line->kind != "FLOCK" || line->process <= 0 || !line->file.ends_with(inode)) continue;
    const Opened opened = hasOpen(line->process, file);
    if (opened == Opened::yes || (ofAnyUser && opened == Opened::unknown)) return line->process;
  }
  return std::nullopt;
}

}  // namespace

std::optional<pid_t> lockHolder(int descriptor) {
  struct stat file = {};
  return fstat(descriptor, &file) == 0 ? findHolder(file, false) : std::nullopt;
}

std::optional<pid_t> lockHolderOfAnyUser(const struct stat& file) { return findHolder(file, true); }

}  // namespace tellaxis::platform
