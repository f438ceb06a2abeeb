// Bridge options: what the table [bridge] of the devices file switches on; all of it is off without that table.
#pragma once

#include <optional>
#include <string>

namespace tellaxis::platform {

/// Paths are native, in UTF-8, and may be relative to the main folder; an empty one means off.
struct BridgeOptions {
  std::string diary;            ///< folder of the diary
  std::optional<int> keepDays;  ///< after so many days a day of the diary goes; absent: it stays. From 1 up
  bool archive = false;         ///< each job's file is kept beside the diary
  bool keepWaiting = false;     ///< jobs that wait in the drop folders at start are kept and handed over
  bool prompt = false;          ///< a job is taken when its writer has finished, not at the next tick
  bool midnight = false;        ///< a wait that spans midnight ends when its time is over
  bool eventLog = false;        ///< failing steps go into the system's log
  std::string metrics;          ///< file of the metrics
  bool waitForPaper = false;    ///< the jobs of some printer wait while it says no; set by the printers, not the table
  std::string role;             ///< "SERVER" or "CLIENT": this computer in the scheduled operations; empty: not given
};

}  // namespace tellaxis::platform
