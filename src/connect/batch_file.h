// Batch file: how one is named on a command line.
#pragma once

#include <string>

namespace tellaxis {

/// The command line that runs the batch file at `path`: quoted where blanks would cut it apart.
inline std::string commandFor(const std::string& path) {
  return path.find(' ') == std::string::npos ? path : "\"" + path + "\"";
}

}  // namespace tellaxis
