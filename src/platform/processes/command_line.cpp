// Command line: quotes, prefixes and endings.
#include "platform/processes/command_line.h"

#include <algorithm>

#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view programEnding = ".exe";
constexpr std::string_view batchEnding = ".bat";

bool endsWith(std::string_view text, std::string_view ending) {
  return text.size() >= ending.size() && equalIgnoringCase(text.substr(text.size() - ending.size()), ending);
}

}  // namespace

std::vector<CommandReading> readingsOf(std::string_view commandLine) {
  const std::size_t first = commandLine.find_first_not_of(blanks);
  if (first == std::string_view::npos || commandLine.find('\0') != std::string_view::npos) return {};
  commandLine.remove_prefix(first);
  std::vector<CommandReading> readings;
  const auto add = [&readings](std::string_view program, std::string_view arguments) {
    if (!program.empty()) readings.push_back({std::string(program), std::string(arguments)});
  };
  if (commandLine.front() == '"') {
    commandLine.remove_prefix(1);
    const std::size_t quote = commandLine.find('"');
    const bool closed = quote != std::string_view::npos;
    add(commandLine.substr(0, quote), closed ? commandLine.substr(quote + 1) : std::string_view());
    return readings;
  }
  for (std::size_t end = 0; end < commandLine.size();) {
    end = std::min(commandLine.find_first_of(blanks, end), commandLine.size());
    add(commandLine.substr(0, end), commandLine.substr(end));
    end = std::min(commandLine.find_first_not_of(blanks, end), commandLine.size());
  }
  return readings;
}

std::vector<std::string> fileNamesOf(std::string_view program) {
  std::vector<std::string> names{std::string(program)};
  if (endsWith(program, programEnding))
    names.emplace_back(program.substr(0, program.size() - programEnding.size()));
  else
    names.push_back(names.front() + std::string(programEnding));
  return names;
}

bool isPath(std::string_view program) { return program.find_first_of("\\/:") != std::string_view::npos; }

bool isBatchFile(std::string_view path) { return endsWith(path, batchEnding); }

}  // namespace tellaxis::platform
