// Command line: the options of both programs, checked and turned into plain data.
#pragma once

#include <span>
#include <string>
#include <variant>

#include "platform/system.h"

namespace tellaxis {

/// What the arguments ask for.
struct CommandLine {
  platform::SystemOptions system;
  int pollingInterval = 500;  ///< milliseconds
};

/// The program is to print a text and end: on standard output with status 0, on standard error with another.
struct EndAtOnce {
  int status = 0;
  std::string text;
};

inline constexpr int statusUnusable = 2;
inline constexpr int statusSecondCopy = 3;

/// Reads the arguments that follow the program's name, in UTF-8. An unusable one gives an Italian line that names it.
std::variant<CommandLine, EndAtOnce> readCommandLine(std::string_view program, std::span<const std::string> arguments);

}  // namespace tellaxis
