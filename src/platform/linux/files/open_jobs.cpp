// Open jobs: a lease and a look at the file before each use.
#include "platform/linux/files/open_jobs.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <utility>

#include "platform/linux/kernel/same_time.h"

namespace tellaxis::platform {

namespace {

/// As many as a pass carries out; more are moved at times, and not run.
constexpr std::size_t most = 101;

/// The descriptor has had a lease before, and its notice still is one that does no harm.
bool isLeased(const Descriptor& file) { return ::fcntl(file.number(), F_SETLEASE, F_RDLCK) == 0; }

void giveLeaseBack(const Descriptor& file) { ::fcntl(file.number(), F_SETLEASE, F_UNLCK); }

}  // namespace

void OpenJobs::clear() {
  const std::lock_guard lock(mutex_);
  jobs_.clear();
  struct rlimit limit {};
  highest_ = ::getrlimit(RLIMIT_NOFILE, &limit) == 0 ? static_cast<int>(std::min<rlim_t>(limit.rlim_cur / 4, 1024)) : 0;
}

void OpenJobs::keep(const std::string& path, Descriptor file) {
  const std::lock_guard lock(mutex_);
  struct stat status {};
  if (file.number() > highest_ || jobs_.size() >= most || ::fstat(file.number(), &status) != 0) return;
  giveLeaseBack(file);
  jobs_.insert_or_assign(path, Job{.file = std::move(file), .changed = status.st_ctim, .names = status.st_nlink});
}

/// A file that is renamed, written or replaced by another gets a new time, or loses its last name.
bool OpenJobs::isUnchanged(const Job& job) {
  struct stat status {};
  return ::fstat(job.file.number(), &status) == 0 && status.st_nlink == job.names &&
         sameTime(status.st_ctim, job.changed) && isLeased(job.file);
}

Descriptor OpenJobs::take(const std::string& path) {
  Descriptor file = borrow(path);
  const std::lock_guard lock(mutex_);
  jobs_.erase(path);
  return file;
}

Descriptor OpenJobs::borrow(const std::string& path) {
  const std::lock_guard lock(mutex_);
  const auto found = jobs_.find(path);
  if (found == jobs_.end()) return {};
  if (isUnchanged(found->second)) return std::exchange(found->second.file, {});
  jobs_.erase(found);
  return {};
}

void OpenJobs::giveBack(const std::string& path, Descriptor file) {
  const std::lock_guard lock(mutex_);
  const auto found = jobs_.find(path);
  if (found == jobs_.end()) return;
  giveLeaseBack(file);
  found->second.file = std::move(file);
}

}  // namespace tellaxis::platform
