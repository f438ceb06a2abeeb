// Open jobs: the files of a passage, kept open until they are deleted, so that none is opened anew for every step.
#pragma once

#include <sys/types.h>

#include <ctime>
#include <map>
#include <mutex>
#include <string>

#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

/// May be used by several threads. Files are known by native paths.
class OpenJobs {
 public:
  /// A new passage begins: what is still kept of the one before is closed.
  void clear();

  /// Keeps a file that has got this path just now. Its lease is given back, so that nobody has to wait for as long as
  /// the job does. Where descriptors are scarce the file is closed instead.
  void keep(const std::string& path, Descriptor file);

  /// The file, with a lease, where nothing has happened to it since, neither to its content nor to its name, and nobody
  /// has it open for writing; kept no longer. None otherwise.
  Descriptor take(const std::string& path);

  /// The same; `giveBack` keeps it again.
  Descriptor borrow(const std::string& path);
  void giveBack(const std::string& path, Descriptor file);

 private:
  struct Job {
    Descriptor file;  ///< none while it is lent
    timespec changed{};
    nlink_t names = 0;
  };

  static bool isUnchanged(const Job& job);

  std::mutex mutex_;
  std::map<std::string, Job> jobs_;
  int highest_ = 0;  ///< number that a kept descriptor may have
};

}  // namespace tellaxis::platform
