// Job diary: composition.
#include "app/job_diary.h"

#include <utility>

namespace tellaxis {

std::unique_ptr<JobDiary> JobDiary::open(Bridge& bridge, const std::string& mainFolder, Devices& noted,
                                         const Activity& activity) {
  const platform::BridgeOptions& options = bridge.options;
  if (options.diary.empty()) return nullptr;
  Diary diary(bridge.host, diaryFolder(options, mainFolder), {.archive = options.archive, .days = options.keepDays});
  return std::unique_ptr<JobDiary>(new JobDiary(bridge, std::move(diary), mainFolder, noted, activity));
}

JobDiary::JobDiary(Bridge& bridge, Diary diary, const std::string& mainFolder, Devices& noted, const Activity& activity)
    : diary_(std::move(diary)), leftovers_(diary_, mainFolder), devices_(noted, activity, bridge, diary_) {}

}  // namespace tellaxis
