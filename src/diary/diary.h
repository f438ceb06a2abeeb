// Diary: one line for each job, in a file for each day, with the jobs' own files beside it where that is wanted.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/activity.h"
#include "diary/day.h"
#include "diary/entry.h"
#include "platform/bridge_options.h"
#include "platform/host.h"

namespace tellaxis {

/// Where the diary of `options` lies: a path as the rules form it, in code page 1252. Relative ones are under
/// `mainFolder`. Empty where there is no diary.
std::string diaryFolder(const platform::BridgeOptions& options, std::string_view mainFolder);

/// Writes the diary. Nothing that fails here concerns the jobs: it is traced and that is all.
class Diary {
 public:
  struct Keeping {
    bool archive = false;
    std::optional<int> days;  ///< older days go; absent: all stay
  };

  Diary(platform::Host& host, std::string folder, Keeping keeping)
      : host_(host), folder_(std::move(folder)), keeping_(keeping) {}

  /// A job is about to begin: keeps its file and notes that it is under way. A job that is `triedAgain` takes up the
  /// entry of its first time.
  void begin(DiaryEntry& entry, std::string_view jobFile, bool triedAgain);

  /// The job ended. Its line is written where `entry` says what became of it, in the day it began.
  void end(const DiaryEntry& entry);

  /// The job ended as it did the time before, which its line says already.
  void endAsBefore();

  /// Keeps a file that waits, for an entry that may come to be written later.
  void keep(DiaryEntry& entry, std::string_view jobFile);

  /// Takes the copy of `keep` back.
  void forget(const DiaryEntry& entry);

  /// The job that was under way when the program ended, or the last one of that run; nothing where there was none.
  struct LastBegun {
    DiaryEntry entry;
    bool ended = false;  ///< its line is there
  };
  std::optional<LastBegun> lastBegun();

  platform::Host& host() { return host_; }

 private:
  void openDay(Day day);
  void makeFolders(Day day);
  void removeOldDays(Day day);
  std::string copyName(const Moment& moment, std::string_view jobFile);
  void append(Day day, const DiaryEntry& entry);

  platform::Host& host_;
  std::string folder_;
  Keeping keeping_;
  std::optional<Day> day_;   ///< that is open
  std::int64_t number_ = 0;  ///< the highest of the day
  bool freshLine_ = false;   ///< the day's file ends with a whole line
  Moment lastCopy_;
  int notes_ = 0;  ///< of jobs that began
};

}  // namespace tellaxis
