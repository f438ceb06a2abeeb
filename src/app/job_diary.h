// Job diary: the diary of a resident program, put between polling and the devices.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/activity.h"
#include "core/bridge.h"
#include "core/devices.h"
#include "diary/diary.h"
#include "diary/diary_devices.h"
#include "diary/leftovers.h"

namespace tellaxis {

class JobDiary {
 public:
  /// Null where the options of `bridge` ask for no diary. Made before the start-up, which may empty the job folders.
  /// `noted` are the devices whose jobs `activity` hears of; `mainFolder` is in code page 1252.
  static std::unique_ptr<JobDiary> open(Bridge& bridge, const std::string& mainFolder, Devices& noted,
                                        const Activity& activity);

  /// The devices for polling to call.
  Devices& devices() { return devices_; }

  /// The start-up is done.
  void started() { leftovers_.noteDiscarded(); }

  /// What became of the jobs of an earlier run, once it is done.
  const std::vector<Leftovers::Entered>& foundAtStart() const { return leftovers_.entered(); }

 private:
  JobDiary(Bridge& bridge, Diary diary, const std::string& mainFolder, Devices& noted, const Activity& activity);

  Diary diary_;
  Leftovers leftovers_;
  DiaryDevices devices_;
};

}  // namespace tellaxis
