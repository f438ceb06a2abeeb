// Command line: its words, and the program that its first word means.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/files/paths.h"

namespace tellaxis::platform {

/// The words of a command line: split at blanks, double quotes group and are dropped.
std::vector<std::string> wordsOf(std::string_view commandLine);

/// The native path of a program: a word with a separator or a drive is a path, any other is looked up on PATH. ".exe"
/// may be missing on either side. Nothing when there is no such file.
std::optional<std::string> findProgram(std::string_view word, const Paths& paths);

/// True for a batch file's name.
bool isBatchFile(std::string_view native);

}  // namespace tellaxis::platform
