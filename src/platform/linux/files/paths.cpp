// Paths: drives, separators, encodings and the look-up without regard to case.
#include "platform/linux/files/paths.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/linux/files/file_name.h"
#include "text/code_page.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

bool isSeparator(char c) { return c == '\\' || c == '/'; }

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

std::string withSlashes(std::string_view text) {
  std::string native = utf8FromCodePage(text);
  for (char& letter : native) letter = letter == '\\' ? '/' : letter;
  return native;
}

bool existsAsSpelled(const std::string& native) {
  struct stat status {};
  return ::lstat(native.c_str(), &status) == 0;
}

}  // namespace

Paths::Paths(std::string mainFolder, std::map<char, std::string> drives)
    : mainFolder_(std::move(mainFolder)), drives_(std::move(drives)) {}

std::optional<std::string> Paths::spelled(std::string_view path) const {
  if (path.empty() || path.find('\0') != std::string_view::npos) return std::nullopt;
  if (path.size() < 2 || path[1] != ':' || !isLetter(path[0])) return withSlashes(path);
  const char letter = upperCase(path[0]);
  const auto drive = drives_.find(letter);
  const std::string folder =
      drive != drives_.end() ? drive->second : mainFolder_ + "/drive_" + static_cast<char>(letter - 'A' + 'a');
  return folder + '/' + withSlashes(path.substr(path.size() > 2 && isSeparator(path[2]) ? 3 : 2));
}

std::optional<std::string> Paths::resolve(std::string_view path) const {
  auto native = spelled(path);
  if (!native || existsAsSpelled(*native) || (errno != ENOENT && errno != ENOTDIR)) return native;
  return otherSpelling(*native).path;
}

Spelling Paths::otherSpelling(const std::string& native) const {
  std::string_view whole = native;
  while (whole.size() > 1 && whole.back() == '/') whole.remove_suffix(1);
  const std::string_view name = whole.substr(folderLength(whole));
  std::string folder(whole.substr(0, folderLength(whole)));
  const bool dots = name == "." || name == "..";
  if (name.empty() || (dots && folder.empty())) return {.path = native};
  if (dots) {
    const Spelling other = otherSpelling(folder);
    return {.path = other.path + native.substr(folder.size()), .exists = other.exists};
  }

  auto match = names_.find(folder, name);
  if (!match && (errno == ENOENT || errno == ENOTDIR) && !folder.empty()) {
    const Spelling other = otherSpelling(folder);
    folder = other.path + (other.path.ends_with('/') ? "" : "/");
    if (other.exists) match = names_.find(folder, name);
    if (match && match->asSpelled) return {.path = folder + native.substr(folderLength(whole)), .exists = true};
  }
  // Something that is there as spelled after all has no other spelling.
  const bool found = match && match->otherwise && !match->asSpelled;
  return {.path = folder + (found ? *match->otherwise : std::string(name)) + native.substr(whole.size()),
          .exists = found};
}

bool Paths::isKnownToBeAbsent(const std::string& native) const {
  const std::size_t length = folderLength(native);
  return names_.isKnownToLack(native.substr(0, length), std::string_view(native).substr(length));
}

}  // namespace tellaxis::platform
