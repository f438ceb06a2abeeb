// Files of Windows: the file system by its wide-character operations.
#pragma once

#include "platform/files.h"
#include "platform/files/readings.h"
#include "platform/trace.h"

namespace tellaxis::platform {

class WindowsFiles : public Files {
 public:
  explicit WindowsFiles(Trace& trace) : trace_(trace) {}

  bool exists(std::string_view path) override;
  std::optional<std::string> lookUp(std::string_view path) override;
  std::optional<FileIdentity> identity(std::string_view path) override;
  bool folderExists(std::string_view path) override;
  bool isUnreachable(std::string_view folder) override;
  std::string temporaryFolder() override;
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
  bool isMovable(const std::wstring& file, const std::wstring& target);

  Trace& trace_;
  Readings readings_;
};

}  // namespace tellaxis::platform
