// Folder names: plain reading, and names kept up to date by notices.
#include "platform/linux/files/folder_names.h"

#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <climits>

#include "platform/linux/files/file_name.h"
#include "platform/linux/files/folder.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

/// Below this many entries a folder is read as quickly as its notices are; above the other it takes too much room.
constexpr std::size_t bigFolder = 16;
constexpr std::size_t hugeFolder = 10'000;
constexpr std::size_t mostFolders = 8;

constexpr std::uint32_t appearing = IN_CREATE | IN_MOVED_TO;
constexpr std::uint32_t vanishing = IN_DELETE | IN_MOVED_FROM;
constexpr std::uint32_t ending = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

/// File systems of this computer alone, so that the system sees every change.
constexpr std::array<std::uint32_t, 6> watchableFileSystems = {
    TMPFS_MAGIC, EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC, F2FS_SUPER_MAGIC, OVERLAYFS_SUPER_MAGIC};

void consider(NameMatch& match, std::string_view candidate, std::string_view name) {
  match.asSpelled = match.asSpelled || candidate == name;
  if (candidate != name && (!match.otherwise || candidate < *match.otherwise)) match.otherwise = std::string(candidate);
}

/// A folder read for one name.
struct Reading {
  NameMatch match;
  std::size_t entries = 0;
};

std::optional<Reading> readFor(const std::string& folder, std::string_view name) {
  const Descriptor opened = openFolder(folder.empty() ? "." : folder);
  if (!opened) return std::nullopt;
  const auto wanted = textOfName(name);
  const bool ascii = std::all_of(name.begin(), name.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
  Reading reading;
  const bool complete = readFolder(opened, [&](const dirent64& entry) {
    ++reading.entries;
    const std::string_view candidate(entry.d_name);
    if (!wanted || (ascii && (candidate.size() != name.size() || upperCase(candidate[0]) != upperCase(name[0]))))
      return;
    if (ascii ? equalIgnoringCase(candidate, name)
              : equalIgnoringCase(textOfName(candidate).value_or(std::string()), *wanted))
      consider(reading.match, candidate, name);
  });
  if (!complete) return std::nullopt;
  return reading;
}

NameMatch matchIn(const std::unordered_map<std::string, std::vector<std::string>>& names, std::string_view name) {
  NameMatch match;
  auto text = textOfName(name);
  if (!text) return match;
  const auto like = names.find(upperCase(*text));
  if (like != names.end())
    for (const std::string& candidate : like->second) consider(match, candidate, name);
  return match;
}

void add(std::unordered_map<std::string, std::vector<std::string>>& names, std::string_view name) {
  auto text = textOfName(name);
  if (!text) return;
  auto& like = names[upperCase(*text)];
  if (std::find(like.begin(), like.end(), name) == like.end()) like.emplace_back(name);
}

void remove(std::unordered_map<std::string, std::vector<std::string>>& names, std::string_view name) {
  auto text = textOfName(name);
  const auto like = text ? names.find(upperCase(*text)) : names.end();
  if (like == names.end()) return;
  std::erase(like->second, name);
  if (like->second.empty()) names.erase(like);
}

bool isWatchable(const Descriptor& folder) {
  struct statfs status {};
  if (::fstatfs(folder.number(), &status) != 0) return false;
  return std::find(watchableFileSystems.begin(), watchableFileSystems.end(),
                   static_cast<std::uint32_t>(status.f_type)) != watchableFileSystems.end();
}

}  // namespace

std::optional<NameMatch> FolderNames::find(const std::string& folder, std::string_view name) {
  const std::lock_guard lock(mutex_);
  if (const Watched* known = watched(folder)) return matchIn(known->names, name);
  const auto reading = readFor(folder, name);
  if (!reading) return std::nullopt;
  if (reading->entries > bigFolder && reading->entries < hugeFolder && !folder.empty()) begin(folder);
  return reading->match;
}

bool FolderNames::isKnownToLack(const std::string& folder, std::string_view name) {
  const std::lock_guard lock(mutex_);
  const Watched* known = watched(folder);
  if (known == nullptr) return false;
  const NameMatch match = matchIn(known->names, name);
  return !match.asSpelled && !match.otherwise;
}

/// The names of `folder` as they are now, where they are kept and the path still leads to the same folder.
FolderNames::Watched* FolderNames::watched(const std::string& folder) {
  if (folders_.find(folder) == folders_.end()) return nullptr;
  takeNotices();
  const auto found = folders_.find(folder);
  if (found == folders_.end()) return nullptr;
  struct stat status {};
  Watched& known = found->second;
  if (::stat(folder.c_str(), &status) != 0 || status.st_dev != known.device || status.st_ino != known.inode) {
    end(known.watch);
    return nullptr;
  }
  known.lastUse = ++uses_;
  return &known;
}

/// Asks for notices first and reads the folder then, so that no change falls in between.
void FolderNames::begin(const std::string& folder) {
  const Descriptor opened = openFolder(folder);
  struct stat status {};
  if (!opened || !isWatchable(opened) || ::fstat(opened.number(), &status) != 0) return;
  if (!notices_) notices_ = Descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  if (!notices_) return;
  makeRoom();
  const std::string byNumber = "/proc/self/fd/" + std::to_string(opened.number());
  const int watch = ::inotify_add_watch(notices_.number(), byNumber.c_str(),
                                        appearing | vanishing | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR);
  if (watch < 0) return;
  Watched known{.watch = watch, .device = status.st_dev, .inode = status.st_ino, .lastUse = ++uses_};
  if (readFolder(opened, [&](const dirent64& entry) { add(known.names, entry.d_name); }))
    folders_.insert_or_assign(folder, std::move(known));
  else
    end(watch);
}

/// Forgets the folder behind `watch`, under whatever paths it is known.
void FolderNames::end(int watch) {
  std::erase_if(folders_, [&](const auto& folder) { return folder.second.watch == watch; });
  ::inotify_rm_watch(notices_.number(), watch);
}

void FolderNames::makeRoom() {
  if (folders_.size() < mostFolders) return;
  const auto oldest = std::min_element(folders_.begin(), folders_.end(), [](const auto& left, const auto& right) {
    return left.second.lastUse < right.second.lastUse;
  });
  end(oldest->second.watch);
}

void FolderNames::takeNotices() {
  constexpr std::size_t size = 16 * 1024;
  constexpr std::size_t largestNotice = sizeof(inotify_event) + NAME_MAX + 1;
  alignas(inotify_event) char buffer[size];
  for (;;) {
    const ssize_t got = ::read(notices_.number(), buffer, size);
    if (got <= 0) return;
    for (ssize_t position = 0; position < got;) {
      const auto* notice = reinterpret_cast<const inotify_event*>(buffer + position);
      take(*notice);
      position += static_cast<ssize_t>(sizeof(inotify_event) + notice->len);
    }
    if (static_cast<std::size_t>(got) <= size - largestNotice) return;
  }
}

void FolderNames::take(const inotify_event& notice) {
  if ((notice.mask & IN_Q_OVERFLOW) != 0) {
    while (!folders_.empty()) end(folders_.begin()->second.watch);
    return;
  }
  if ((notice.mask & ending) != 0) return end(notice.wd);
  for (auto& [folder, known] : folders_) {
    if (known.watch != notice.wd) continue;
    if ((notice.mask & appearing) != 0)
      add(known.names, notice.name);
    else
      remove(known.names, notice.name);
  }
}

}  // namespace tellaxis::platform
