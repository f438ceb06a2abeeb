// Jobs at start: the four folders.
#include "core/jobs_at_start.h"

#include <utility>

namespace tellaxis {

namespace {

struct JobFolder {
  std::string_view name;
  Device device;
  bool jobsRunHere;
};

constexpr JobFolder jobFolders[] = {
    {.name = "\\IN", .device = Device::fiscalPrinter, .jobsRunHere = true},
    {.name = "\\Orbis", .device = Device::fiscalPrinter, .jobsRunHere = false},
    {.name = "\\CortIN", .device = Device::courtesyPrinter, .jobsRunHere = true},
    {.name = "\\CortOrbis", .device = Device::courtesyPrinter, .jobsRunHere = false},
};

}  // namespace

std::vector<JobAtStart> jobsAtStart(platform::Files& files, std::string_view mainFolder) {
  std::vector<JobAtStart> jobs;
  for (const JobFolder& row : jobFolders) {
    const std::string folder = std::string(mainFolder) + std::string(row.name);
    if (!files.folderExists(folder)) continue;
    for (std::string& name : files.list(folder).value_or(std::vector<std::string>())) {
      std::string path = std::string(folder).append("\\").append(name);
      jobs.push_back({std::move(path), std::move(name), row.device, row.jobsRunHere});
    }
  }
  return jobs;
}

}  // namespace tellaxis
