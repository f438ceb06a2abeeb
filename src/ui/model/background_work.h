// Background work: what the windows ask beside the bridge, and what may take its time.
#pragma once

#include <string>
#include <vector>

#include "check/finding.h"
#include "core/activity.h"
#include "diary/day.h"
#include "diary/entry.h"
#include "diary/reprint.h"

namespace tellaxis::ui {

/// A job of the diary as it can be shown.
struct JobLook {
  std::string text;     ///< of its file, in code page 1252; empty where the diary kept none
  std::string printed;  ///< what a printer prints of it, UTF-8; empty where no printer does
  std::vector<std::string>
      pages;  ///< the pages as they would look: the bytes of a picture file each, of the kind that the system draws
};

/// Every operation is called on a thread of its own, beside the bridge, and shares nothing with it but the disk. Any of
/// them throws `std::runtime_error` with an Italian text in UTF-8 where it cannot be done at all.
class BackgroundWork {
 public:
  virtual ~BackgroundWork() = default;

  /// What is wrong; servers are asked only with `network`.
  virtual std::vector<Finding> check(bool network) = 0;

  /// Sends a device its sample job and says what became of it, in UTF-8.
  virtual std::string tryDevice(Device device) = 0;

  /// Whether there is a diary; what follows is only asked where there is one.
  virtual bool keepsDiary() const = 0;

  /// The days of the diary, today last, whether it has jobs or not.
  virtual std::vector<Day> days() = 0;
  virtual std::vector<DiaryEntry> entries(Day day) = 0;
  virtual JobLook lookAt(const DiaryEntry& entry) = 0;

  /// Puts a job into its place again and says what came of it, in UTF-8.
  virtual std::string reprint(const std::string& id, ReprintConsent consent) = 0;
};

}  // namespace tellaxis::ui
