// Command line: splitting, and looking programs up.
#include "platform/linux/processes/command_line.h"

#include <sys/stat.h>

#include <cstdlib>

#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

constexpr std::string_view programEnding = ".exe";
constexpr std::string_view batchEnding = ".bat";

bool endsWith(std::string_view text, std::string_view ending) {
  return text.size() >= ending.size() && equalIgnoringCase(text.substr(text.size() - ending.size()), ending);
}

std::vector<std::string> possibleNames(std::string_view word) {
  std::vector<std::string> names{std::string(word)};
  if (endsWith(word, programEnding))
    names.emplace_back(word.substr(0, word.size() - programEnding.size()));
  else
    names.push_back(names.front() + std::string(programEnding));
  return names;
}

bool isFile(const std::string& native) {
  struct stat status {};
  return ::stat(native.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// The folders of PATH; an empty one is the working folder.
std::vector<std::string> searchPath() {
  const char* path = std::getenv("PATH");
  std::string_view rest = path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin";
  std::vector<std::string> folders;
  for (;;) {
    const std::size_t colon = rest.find(':');
    const std::string_view folder = rest.substr(0, colon);
    folders.emplace_back(folder.empty() ? "." : folder);
    if (colon == std::string_view::npos) return folders;
    rest.remove_prefix(colon + 1);
  }
}

std::optional<std::string> onSearchPath(const std::string& name, const Paths& paths) {
  const auto native = paths.spelled(name);
  if (!native) return std::nullopt;
  for (const std::string& folder : searchPath())
    if (std::string program = folder + '/' + *native; isFile(program)) return program;
  return std::nullopt;
}

}  // namespace

std::vector<std::string> wordsOf(std::string_view commandLine) {
  std::vector<std::string> words;
  bool inWord = false;
  bool quoted = false;
  for (const char c : commandLine) {
    const bool blank = (c == ' ' || c == '\t') && !quoted;
    if (!blank && !inWord) words.emplace_back();
    inWord = !blank;
    if (c == '"')
      quoted = !quoted;
    else if (!blank)
      words.back() += c;
  }
  return words;
}

std::optional<std::string> findProgram(std::string_view word, const Paths& paths) {
  const bool isPath = word.find_first_of("\\/:") != std::string_view::npos;
  for (const std::string& name : possibleNames(word)) {
    auto program = isPath ? paths.resolve(name) : onSearchPath(name, paths);
    if (program && isFile(*program)) return program;
  }
  return std::nullopt;
}

bool isBatchFile(std::string_view native) { return endsWith(native, batchEnding); }

}  // namespace tellaxis::platform
