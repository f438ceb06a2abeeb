// Leftovers: the folders that a start empties.
#include "diary/leftovers.h"

#include <optional>
#include <utility>

#include "diary/content.h"
#include "platform/files.h"
#include "text/letter_case.h"

namespace tellaxis {

namespace {

struct JobFolder {
  std::string_view name;
  Device device;
  bool jobsRunHere;  ///< a job lies here while it is under way, and is deleted only afterwards
};

constexpr JobFolder jobFolders[] = {
    {.name = "\\IN", .device = Device::fiscalPrinter, .jobsRunHere = true},
    {.name = "\\Orbis", .device = Device::fiscalPrinter, .jobsRunHere = false},
    {.name = "\\CortIN", .device = Device::courtesyPrinter, .jobsRunHere = true},
    {.name = "\\CortOrbis", .device = Device::courtesyPrinter, .jobsRunHere = false},
};

}  // namespace

Leftovers::Leftovers(Diary& diary, std::string_view mainFolder) : diary_(diary) {
  platform::Files& files = diary.host().files;
  const auto last = diary.lastBegun();
  if (last && !last->ended) diary.end(last->entry);
  for (const JobFolder& row : jobFolders) {
    const std::string folder = std::string(mainFolder) + std::string(row.name);
    if (!files.folderExists(folder)) continue;
    for (const std::string& name : files.list(folder).value_or(std::vector<std::string>())) {
      if (row.jobsRunHere && last && last->entry.device == row.device && equalIgnoringCase(last->entry.job, name))
        continue;
      Waiting waiting{.path = std::string(folder).append("\\").append(name), .entry = {}};
      waiting.entry.device = row.device;
      waiting.entry.outcome = Outcome::discarded;
      waiting.entry.bytes = contentOf(files, waiting.path).bytes;
      diary.keep(waiting.entry, waiting.path);
      waiting_.push_back(std::move(waiting));
    }
  }
}

void Leftovers::noteDiscarded() {
  for (const Waiting& waiting : std::exchange(waiting_, {})) {
    if (diary_.host().files.exists(waiting.path))
      diary_.forget(waiting.entry);
    else
      diary_.end(waiting.entry);
  }
}

}  // namespace tellaxis
