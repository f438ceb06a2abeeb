// Jobs at start: the files of an earlier run in the job folders, which the start-up may empty.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/activity.h"
#include "platform/files.h"

namespace tellaxis {

struct JobAtStart {
  std::string path;
  std::string name;
  Device device;
  bool mayHaveBegun;  ///< it lies where jobs are while they are under way; they are deleted only afterwards
};

/// To be asked before the start-up. `mainFolder` carries no trailing separator.
std::vector<JobAtStart> jobsAtStart(platform::Files& files, std::string_view mainFolder);

}  // namespace tellaxis
