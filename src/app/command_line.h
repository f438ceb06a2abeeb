// Command line: the options of both programs, checked and turned into plain data.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "app/commands/check_command.h"
#include "app/commands/diary_command.h"
#include "app/options.h"
#include "platform/clock.h"
#include "platform/system.h"

namespace tellaxis {

/// What the arguments ask for.
struct CommandLine {
  platform::SystemOptions system;
  Command command = Command::stay;
  bool endsOther = false;                 ///< ask the copy on this main folder to end, and do nothing else
  int pollingInterval = 500;              ///< milliseconds
  std::string stationRole;                ///< of `pianificate`; empty: as the devices file has it
  std::optional<platform::DateTime> now;  ///< of `pianificate`: the minute to pretend
  DiaryRequest diary;                     ///< of `diario` and `ristampa`
  CheckOptions check;                     ///< of `controlla`
  Device tried = Device::display;         ///< of `prova`
};

/// The program is to print a text and end: on standard output with status 0, on standard error with another.
struct EndAtOnce {
  int status = 0;
  std::string text;
};

inline constexpr int statusNotTransferred = 1;
inline constexpr int statusNotEnded = 1;
inline constexpr int statusUnusable = 2;
inline constexpr int statusSecondCopy = 3;
inline constexpr int statusNoCopy = 4;

/// Reads the arguments that follow the program's name, in UTF-8. An unusable one gives an Italian line that names it.
std::variant<CommandLine, EndAtOnce> readCommandLine(std::string_view program, std::span<const std::string> words);

}  // namespace tellaxis
