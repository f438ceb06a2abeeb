// Files: the file system of Linux.
#pragma once

#include <set>

#include "platform/files.h"
#include "platform/linux/files/paths.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Files are regular files and links to such; a name that begins with a dot is hidden. A file that another process has
/// open for writing is held. Nothing here waits for anybody: pipes and devices in a file's place neither.
class LinuxFiles : public Files {
 public:
  LinuxFiles(const Paths& paths, Trace& trace) : paths_(paths), trace_(trace) {}

  bool exists(std::string_view path) override;
  std::optional<std::string> lookUp(std::string_view path) override;
  std::optional<FileIdentity> identity(std::string_view path) override;
  bool folderExists(std::string_view path) override;
  bool createFolder(std::string_view path) override;
  std::optional<std::vector<std::string>> list(std::string_view folder) override;
  bool copy(std::string_view from, std::string_view to) override;
  bool move(std::string_view from, std::string_view to) override;
  bool remove(std::string_view path) override;
  bool canRemove(std::string_view path) override;
  bool removeAll(std::string_view folder) override;
  bool removeFolder(std::string_view path) override;
  std::unique_ptr<InputFile> openInput(std::string_view path) override;
  bool append(std::string_view path, std::string_view text) override;
  bool create(std::string_view path, std::string_view text, bool ownerOnly) override;

 private:
  std::optional<std::string> fileAt(std::string_view path) const;
  bool noteWith(std::string_view operation, std::string_view subject, int error);
  bool note(std::string_view operation, std::string_view subject, bool succeeded);
  void noteUnreadableName(std::string_view folder, std::string_view name);

  const Paths& paths_;
  Trace& trace_;
  std::set<std::string, std::less<>> unreadableNames_;
};

}  // namespace tellaxis::platform
