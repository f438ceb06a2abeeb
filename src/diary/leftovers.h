// Leftovers: the jobs of an earlier run that a start finds, and what the diary says of them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "diary/diary.h"

namespace tellaxis {

/// Made before the start-up: enters the job that was under way when the program ended, and keeps a copy of every job
/// that waits.
class Leftovers {
 public:
  Leftovers(Diary& diary, std::string_view mainFolder);

  /// After the start-up: enters the jobs that it emptied.
  void noteDiscarded();

  struct Entered {
    Device device;
    Outcome outcome;
  };
  /// What was entered so far, one for each job.
  const std::vector<Entered>& entered() const { return entered_; }

 private:
  struct Waiting {
    std::string path;
    DiaryEntry entry;
  };

  void enter(const DiaryEntry& entry);

  Diary& diary_;
  std::vector<Waiting> waiting_;
  std::vector<Entered> entered_;
};

}  // namespace tellaxis
