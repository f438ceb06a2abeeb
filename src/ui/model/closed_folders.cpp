// Closed folders: which folders are looked at, and the sentence.
#include "ui/model/closed_folders.h"

#include <algorithm>
#include <vector>

#include "check/words.h"

namespace tellaxis::ui {

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
  return closed.empty() ? "" : "Non si pu\xF2 scrivere in " + listed(closed);
}

}  // namespace tellaxis::ui
