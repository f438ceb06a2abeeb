// Program file: splitting arguments, and looking programs up.
#include "platform/linux/processes/program_file.h"

#include <sys/stat.h>

#include <cstdlib>

#include "platform/processes/command_line.h"

namespace tellaxis::platform {

namespace {

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

std::optional<std::string> onSearchPath(const std::string& name) {
  for (const std::string& folder : searchPath())
    if (std::string program = std::string(folder).append("/").append(name); isFile(program)) return program;
  return std::nullopt;
}

}  // namespace

std::vector<std::string> wordsOf(std::string_view arguments) {
  std::vector<std::string> words;
  bool inWord = false;
  bool quoted = false;
  for (const char c : arguments) {
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

std::optional<std::string> programFile(std::string_view name, const Paths& paths) {
  auto program = isPath(name) ? paths.resolve(name) : paths.spelled(name);
  if (program && !isPath(name)) return onSearchPath(*program);
  return program && isFile(*program) ? program : std::nullopt;
}

}  // namespace tellaxis::platform
