// Folder names: plain reading, and names that are kept while their folder rests.
#include "platform/linux/files/folder_names.h"

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/linux/files/file_name.h"
#include "platform/linux/files/folder.h"
#include "platform/linux/kernel/same_time.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

/// Above this many entries the names take too much room.
constexpr std::size_t hugeFolder = 10'000;
constexpr std::size_t mostFolders = 8;

/// File systems of this computer alone, which give a folder a new time at every change of its names.
constexpr std::array<std::uint32_t, 6> keptFileSystems = {TMPFS_MAGIC,       EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC,
                                                          BTRFS_SUPER_MAGIC, F2FS_SUPER_MAGIC, OVERLAYFS_SUPER_MAGIC};

void consider(NameMatch& match, std::string_view candidate, std::string_view name) {
  match.asSpelled = match.asSpelled || candidate == name;
  if (candidate != name && (!match.otherwise || candidate < *match.otherwise)) match.otherwise = std::string(candidate);
}

std::optional<NameMatch> readFor(const Descriptor& folder, std::string_view name) {
  const auto wanted = textOfName(name);
  const bool ascii = std::all_of(name.begin(), name.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
  NameMatch match;
  const bool complete =
      ::lseek(folder.number(), 0, SEEK_SET) == 0 && readFolder(folder, [&](const dirent64& entry) {
        const std::string_view candidate(entry.d_name);
        if (!wanted || (ascii && (candidate.size() != name.size() || upperCase(candidate[0]) != upperCase(name[0]))))
          return;
        if (ascii ? equalIgnoringCase(candidate, name)
                  : equalIgnoringCase(textOfName(candidate).value_or(std::string()), *wanted))
          consider(match, candidate, name);
      });
  if (!complete) return std::nullopt;
  return match;
}

NameMatch matchIn(const std::unordered_map<std::string, std::vector<std::string>>& names, std::string_view name) {
  NameMatch match;
  const auto text = textOfName(name);
  if (!text) return match;
  const auto like = names.find(upperCase(*text));
  if (like != names.end())
    for (const std::string& candidate : like->second) consider(match, candidate, name);
  return match;
}

bool isKeepable(const Descriptor& folder) {
  struct statfs status {};
  if (::fstatfs(folder.number(), &status) != 0) return false;
  return std::ranges::find(keptFileSystems, static_cast<std::uint32_t>(status.f_type)) != keptFileSystems.end();
}

/// A time that is still to come, since the clock was set back, does not rest.
bool rests(const timespec& changed, std::chrono::milliseconds rest) {
  timespec now{};
  if (::clock_gettime(CLOCK_REALTIME, &now) != 0) return false;
  const auto since =
      std::chrono::seconds(now.tv_sec - changed.tv_sec) + std::chrono::nanoseconds(now.tv_nsec - changed.tv_nsec);
  return since >= rest;
}

}  // namespace

std::optional<NameMatch> FolderNames::find(const std::string& folder, std::string_view name) {
  const std::lock_guard lock(mutex_);
  const Kept* known = kept(folder);
  if (known != nullptr && !known->tooMany) return matchIn(known->names, name);
  const Descriptor opened = openFolder(folder.empty() ? "." : folder);
  if (!opened) return std::nullopt;
  if (known == nullptr && !folder.empty()) known = keep(folder, opened);
  return known != nullptr && !known->tooMany ? matchIn(known->names, name) : readFor(opened, name);
}

bool FolderNames::isKnownToLack(const std::string& folder, std::string_view name) {
  const std::lock_guard lock(mutex_);
  const Kept* known = kept(folder);
  if (known == nullptr || known->tooMany) return false;
  const NameMatch match = matchIn(known->names, name);
  return !match.asSpelled && !match.otherwise;
}

/// The names of `folder`, where they are kept and neither the folder nor the path to it has changed.
FolderNames::Kept* FolderNames::kept(const std::string& folder) {
  const auto found = folders_.find(folder);
  if (found == folders_.end()) return nullptr;
  struct stat status {};
  Kept& known = found->second;
  if (::stat(folder.c_str(), &status) == 0 && status.st_dev == known.device && status.st_ino == known.inode &&
      sameTime(status.st_ctim, known.changed)) {
    known.lastUse = ++uses_;
    return &known;
  }
  folders_.erase(found);
  return nullptr;
}

/// Reads the names of a folder that rests. Its time is taken first, so that a change while it is read shows.
FolderNames::Kept* FolderNames::keep(const std::string& folder, const Descriptor& opened) {
  struct stat status {};
  if (::fstat(opened.number(), &status) != 0 || !rests(status.st_ctim, rest_) || !isKeepable(opened)) return nullptr;
  Kept known{.device = status.st_dev, .inode = status.st_ino, .changed = status.st_ctim, .lastUse = ++uses_};
  std::size_t entries = 0;
  const bool complete = readFolder(opened, [&](const dirent64& entry) {
    if (++entries > hugeFolder) return;
    if (const auto text = textOfName(entry.d_name)) known.names[upperCase(*text)].emplace_back(entry.d_name);
  });
  if (!complete) return nullptr;
  known.tooMany = entries > hugeFolder;
  if (known.tooMany) known.names.clear();
  makeRoom();
  return &folders_.insert_or_assign(folder, std::move(known)).first->second;
}

void FolderNames::makeRoom() {
  if (folders_.size() < mostFolders) return;
  folders_.erase(std::ranges::min_element(folders_, {}, [](const auto& folder) { return folder.second.lastUse; }));
}

}  // namespace tellaxis::platform
