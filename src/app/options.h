// Options: the commands and options of both programs as two tables, and what arguments mean by them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tellaxis {

/// Staying to poll, or one operation and an end.
enum class Command : std::uint8_t { stay, ftp, pianificate, diario, ristampa, controlla, prova, porte };

struct NamedCommand {
  std::string_view name;
  Command command;
  std::string_view word;  ///< what the help calls the word that follows; empty where none does
  std::string_view help;  ///< lines
};

struct Option {
  const char* name;
  std::string_view value;  ///< what the help calls its value; empty for a switch
  std::uint32_t commands;  ///< bits of the commands that it belongs to; 0: every one, and none
  std::string_view help;   ///< lines
  bool repeatable = false;
};

/// Arguments by the tables, their values not checked yet.
struct Arguments {
  Command command = Command::stay;
  std::string word;  ///< that followed the command
  std::vector<std::pair<const Option*, std::string>> options;

  bool has(std::string_view name) const { return value(name) != nullptr; }
  /// The value of an option by its name without dashes; null when it was not given.
  const std::string* value(std::string_view name) const;
};

/// The arguments that follow the program's name, in UTF-8, or an Italian complaint about the first unusable one.
std::variant<Arguments, std::string> argumentsFrom(std::span<const std::string> words);

/// What `--help` shows of a program of this name.
std::string helpFor(std::string_view program);

}  // namespace tellaxis
