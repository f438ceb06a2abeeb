// Highest resident: how much memory this process has had at most since a moment.
#pragma once

#include <fstream>
#include <string>

namespace tellaxis::test {

/// Begins anew: what is resident now is the highest so far.
inline void forgetHighestResident() { std::ofstream("/proc/self/clear_refs") << 5; }

/// Kilobytes.
inline long highestResident() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line))
    if (line.starts_with("VmHWM:")) return std::stol(line.substr(6));
  return 0;
}

}  // namespace tellaxis::test
