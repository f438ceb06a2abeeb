// Command line: which part of it names the program, by the rule of Windows on every system.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tellaxis::platform {

/// One way to read a command line.
struct CommandReading {
  std::string program;    ///< a path, or a bare name that is looked up on the search path; without quotes
  std::string arguments;  ///< everything after it as written, with the blanks before it

  bool operator==(const CommandReading&) const = default;
};

/// The readings of a command line, to be tried in this order until a program exists. After a quote at the beginning the
/// quoted part is the program. Without one each longer prefix up to a blank or tab may be, so that
/// "C:\Program Files\driver.exe /x" needs no quotes. Nothing for a line without a
/// program, or with a NUL in it.
std::vector<CommandReading> readingsOf(std::string_view commandLine);

/// The file names that a program's name may stand for, in this order: as written, then with ".exe" put on or taken off.
std::vector<std::string> fileNamesOf(std::string_view program);

/// False for a bare name, which is looked up on the search path.
bool isPath(std::string_view program);

/// True for a batch file's name.
bool isBatchFile(std::string_view path);

/// A program that exists, as the system names its file, and the arguments as written.
template <class NativePath>
struct FoundCommand {
  NativePath program;
  std::string arguments;
};

/// The first reading whose program exists. `fileAt` gives the file that a name stands for, or nothing.
template <class FileAt>
auto findCommand(std::string_view commandLine, FileAt fileAt)
    -> std::optional<FoundCommand<typename decltype(fileAt(std::string()))::value_type>> {
  for (CommandReading& reading : readingsOf(commandLine))
    for (const std::string& name : fileNamesOf(reading.program))
      if (auto file = fileAt(name)) return {{std::move(*file), std::move(reading.arguments)}};
  return std::nullopt;
}

}  // namespace tellaxis::platform
