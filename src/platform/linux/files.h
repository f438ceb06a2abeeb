// Files: the file system of Linux.
#pragma once

#include <optional>

#include "platform/files.h"
#include "platform/files/readings.h"
#include "platform/linux/files/passage.h"
#include "platform/linux/files/paths.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Files are regular files; a name that begins with a dot is hidden. A link to a file exists, but is not listed, read
/// or written through. A file that another process has open for writing is held; where the system does not tell, a file
/// counts as held until it has settled.
class LinuxFiles : public Files {
 public:
  LinuxFiles(const Paths& paths, Trace& trace) : paths_(paths), trace_(trace), seen_(trace) {}

  bool exists(std::string_view path) override;
  std::optional<std::string> lookUp(std::string_view path) override;
  std::optional<FileIdentity> identity(std::string_view path) override;
  bool folderExists(std::string_view path) override;
  bool isUnreachable(std::string_view folder) override;
  bool createFolder(std::string_view path) override;
  std::optional<std::vector<std::string>> list(std::string_view folder) override;
  std::unique_ptr<Passage> openPassage(std::string_view folder, std::string_view target) override;
  bool copy(std::string_view from, std::string_view to) override;
  bool copyToNew(std::string_view from, std::string_view to) override;
  bool move(std::string_view from, std::string_view to) override;
  bool remove(std::string_view path) override;
  bool canRemove(std::string_view path) override;
  bool removeAll(std::string_view folder) override;
  bool removeFolder(std::string_view path) override;
  std::unique_ptr<InputFile> openInput(std::string_view path) override;
  bool append(std::string_view path, std::string_view text) override;
  bool create(std::string_view path, std::string_view text, Readers readers) override;

 private:
  std::optional<std::string> fileAt(std::string_view path) const;
  std::optional<PassageEnd> openEnd(std::string_view folder);
  Descriptor openFile(std::string_view path, std::string& native, std::chrono::milliseconds timeout);
  Descriptor openForContent(std::string_view path, std::string& native, std::chrono::milliseconds timeout);
  bool makeCopy(const Descriptor& source, const std::string& to);
  bool moveFile(const std::string& path, std::string to);
  bool removeFile(std::string native, Readings::Outcome reading);
  bool noteWith(std::string_view operation, std::string_view subject, int error);
  bool note(std::string_view operation, std::string_view subject, bool succeeded);

  const Paths& paths_;
  Trace& trace_;
  SeenFiles seen_;
  Readings readings_;
};

}  // namespace tellaxis::platform
