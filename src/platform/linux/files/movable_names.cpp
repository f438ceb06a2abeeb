// Movable names: reading a folder, and a reason for each file that is left out.
#include "platform/linux/files/movable_names.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/linux/files/file_name.h"
#include "platform/linux/files/finished_file.h"
#include "platform/linux/files/folder.h"
#include "platform/linux/files/movable_files.h"
#include "platform/linux/kernel/reason.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

constexpr std::size_t mostRemembered = 1000;

constexpr std::string_view unwritableName = "il nome non si scrive nella tabella codici 1252, o contiene \\";
constexpr std::string_view nameTwice = "il nome differisce da un altro solo per le maiuscole";

struct Name {
  std::string text;    ///< in code page 1252
  std::string onDisk;  ///< as the folder has it
};

bool comesFirst(const Name& left, const Name& right) {
  return left.text == right.text ? left.onDisk < right.onDisk : lessIgnoringCase(left.text, right.text);
}

}  // namespace

std::optional<std::vector<std::string>> MovableNames::in(std::string_view shown, const Descriptor& folder,
                                                         std::string native, const Descriptor& target) {
  if (!native.ends_with('/')) native += '/';
  std::vector<Name> found;
  const bool read = readFolder(folder, [&](const dirent64& entry) {
    if (!isListed(folder, entry)) return;
    auto text = textOfName(entry.d_name);
    if (text && text->find('\\') == std::string::npos)
      found.push_back({std::move(*text), entry.d_name});
    else
      noteOnce(shown, entry.d_name, std::string(unwritableName));
  });
  if (!read) return std::nullopt;
  if (!found.empty() && !enoughDescriptors()) {
    errno = EMFILE;
    return std::nullopt;
  }
  std::ranges::sort(found, comesFirst);
  MovableFiles movable(folder, target);
  std::vector<std::string> names;
  for (auto& [text, onDisk] : found) {
    if (!names.empty() && equalIgnoringCase(names.back(), text)) {
      noteOnce(shown, text, std::string(nameTwice));
      continue;
    }
    const Descriptor file = openRegularFile(folder.number(), onDisk.c_str());
    int reason = file ? whyUnfinished(settling_, file, native + onDisk) : errno;
    if (reason == ETXTBSY || reason == EINPROGRESS || reason == ENOENT) continue;
    if (reason == 0) reason = movable.whyNone();
    if (reason == 0) reason = movable.whyNot(file, text);
    if (reason != 0)
      noteOnce(shown, text, reasonOf(reason));
    else if (!failedMoves_.isStuck(native + onDisk, file, folder, target))
      names.push_back(std::move(text));
  }
  return names;
}

void MovableNames::noteOnce(std::string_view folder, std::string_view name, std::string reason) {
  if (noted_.size() >= mostRemembered) noted_.clear();
  std::string& noted = noted_[std::string(folder) + '\\' + std::string(name)];
  if (noted == reason) return;
  noted = std::move(reason);
  trace_.failed("list", std::string(folder) + std::string(folder.ends_with('\\') ? "" : "\\") + std::string(name),
                noted);
}

}  // namespace tellaxis::platform
