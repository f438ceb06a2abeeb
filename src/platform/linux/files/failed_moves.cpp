// Failed moves: the facts of a file and of its two folders.
#include "platform/linux/files/failed_moves.h"

#include "platform/linux/kernel/same_time.h"

namespace tellaxis::platform {

namespace {

constexpr std::size_t mostFailed = 1000;

}  // namespace

bool FailedMoves::Facts::operator==(const Facts& other) const {
  return inode == other.inode && size == other.size && sameTime(written, other.written) &&
         sameTime(changed, other.changed);
}

FailedMoves::Facts FailedMoves::factsOf(const Descriptor& opened) {
  struct stat status {};
  if (::fstat(opened.number(), &status) != 0) return {};
  return {.inode = status.st_ino, .size = status.st_size, .written = status.st_mtim, .changed = status.st_ctim};
}

void FailedMoves::add(const std::string& path) {
  if (failed_.size() >= mostFailed) failed_.clear();
  failed_.insert_or_assign(path, std::nullopt);
}

bool FailedMoves::isStuck(const std::string& path, const Descriptor& file, const Descriptor& folder,
                          const Descriptor& target) {
  const auto found = failed_.find(path);
  if (found == failed_.end()) return false;
  const State present = {factsOf(file), factsOf(folder), factsOf(target)};
  if (!found->second) found->second = present;
  if (*found->second == present) return true;
  failed_.erase(found);
  return false;
}

}  // namespace tellaxis::platform
