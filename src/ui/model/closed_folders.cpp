// Closed folders: which folders are looked at, and the sentence.
#include "ui/model/closed_folders.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace tellaxis::ui {

namespace {

/// With the backslash of a drive's root; empty for a bare name.
std::string folderOf(std::string_view file) {
  const std::size_t end = file.find_last_of("\\/");
  if (end == std::string_view::npos) return {};
  const bool isRoot = end == 0 || file[end - 1] == ':';
  return std::string(file.substr(0, isRoot ? end + 1 : end));
}

}  // namespace

std::string closedFolders(const Settings& settings, platform::Inspection& inspection) {
  std::vector<std::string> folders{settings.mainFolder};
  if (settings.MF_Active) {
    folders.push_back(folderOf(settings.MF_File));
    folders.push_back(folderOf(settings.MF_File_Output));
  }
  std::vector<std::string> closed;
  for (const std::string& folder : folders) {
    if (folder.empty() || std::ranges::find(closed, folder) != closed.end()) continue;
    const platform::PathLook look = inspection.look(folder);
    if (look.isFolder && !look.mayWrite) closed.push_back(folder);
  }
  std::string text;
  for (const std::string& folder : closed) text += (text.empty() ? "Non si pu\xF2 scrivere in " : ", ") + folder;
  return text;
}

}  // namespace tellaxis::ui
