// Leftovers: what lies in the folders that a start empties.
#include "diary/leftovers.h"

#include <utility>

#include "core/jobs_at_start.h"
#include "diary/content.h"
#include "platform/files.h"
#include "text/letter_case.h"

namespace tellaxis {

Leftovers::Leftovers(Diary& diary, std::string_view mainFolder) : diary_(diary) {
  platform::Files& files = diary.host().files;
  const auto last = diary.lastBegun();
  if (last && !last->ended) enter(last->entry);
  for (JobAtStart& job : jobsAtStart(files, mainFolder)) {
    if (job.mayHaveBegun && last && last->entry.device == job.device && equalIgnoringCase(last->entry.job, job.name))
      continue;
    Waiting waiting{.path = std::move(job.path), .entry = {}};
    waiting.entry.device = job.device;
    waiting.entry.outcome = Outcome::discarded;
    waiting.entry.bytes = contentOf(files, waiting.path).bytes;
    diary.keep(waiting.entry, waiting.path);
    waiting_.push_back(std::move(waiting));
  }
}

void Leftovers::noteDiscarded() {
  for (const Waiting& waiting : std::exchange(waiting_, {})) {
    if (diary_.host().files.exists(waiting.path))
      diary_.forget(waiting.entry);
    else
      enter(waiting.entry);
  }
}

void Leftovers::enter(const DiaryEntry& entry) {
  diary_.end(entry);
  entered_.push_back({entry.device, entry.outcome});
}

}  // namespace tellaxis
