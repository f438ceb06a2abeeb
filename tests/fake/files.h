// Files: a file system in memory.
#pragma once

#include <map>
#include <set>
#include <string>

#include "fake/journal.h"
#include "fake/names.h"
#include "platform/files.h"
#include "platform/files/readings.h"

namespace tellaxis::fake {

class Files : public platform::Files {
 public:
  explicit Files(Journal& journal) : journal_(journal) {}

  // What the tests put there and look at; none of it is a call.
  void put(std::string_view path, std::string_view text);
  void erase(std::string_view path) { files_.erase(lower(path)); }
  bool has(std::string_view path) const { return files_.contains(lower(path)); }
  std::string text(std::string_view path) const;
  void addFolder(std::string_view path) { folders_.insert(lower(path)); }
  bool hasFolder(std::string_view path) const { return folders_.contains(lower(path)); }
  /// A file that its writer still has open: it cannot be listed, read, moved or deleted.
  void hold(std::string_view path) { held_.insert(lower(path)); }
  void release(std::string_view path) { held_.erase(lower(path)); }
  /// A file that nobody may delete.
  void protect(std::string_view path) { protected_.insert(lower(path)); }
  void unprotect(std::string_view path) { protected_.erase(lower(path)); }
  /// From now on this folder does not exist.
  void withoutFolder(std::string_view folder) { missingFolders_.insert(lower(folder)); }
  /// From now on the disk that this folder is on takes no more bytes.
  void fill(std::string_view folder) { fullFolders_.insert(lower(folder)); }
  /// A folder of another computer, which answers again at the look of this number.
  void makeUnreachable(std::string_view folder, int looks) { unreachable_[lower(folder)] = looks; }
  /// Whether the program has a file open for reading; until it closes it, the file cannot be moved or deleted.
  bool isOpen(std::string_view path) const { return open_.contains(lower(path)); }

  std::string userTemporaryFolder;  ///< empty: there is none

  bool exists(std::string_view path) override;
  std::optional<std::string> lookUp(std::string_view path) override;
  std::optional<platform::FileIdentity> identity(std::string_view path) override;
  bool folderExists(std::string_view path) override;
  bool isUnreachable(std::string_view folder) override;
  std::string temporaryFolder() override { return userTemporaryFolder; }
  bool createFolder(std::string_view path) override;
  std::optional<std::vector<std::string>> list(std::string_view folder) override;
  std::unique_ptr<platform::Passage> openPassage(std::string_view folder, std::string_view target) override;
  bool copy(std::string_view from, std::string_view to) override;
  bool copyToNew(std::string_view from, std::string_view to) override { return !has(to) && copy(from, to); }
  bool move(std::string_view from, std::string_view to) override;
  bool remove(std::string_view path) override;
  bool canRemove(std::string_view path) override;
  bool removeAll(std::string_view folder) override;
  bool removeFolder(std::string_view path) override;
  std::unique_ptr<platform::InputFile> openInput(std::string_view path) override;
  bool append(std::string_view path, std::string_view text) override;
  bool create(std::string_view path, std::string_view text, platform::Readers readers) override;

 private:
  struct File {
    std::string name;
    std::string text;
    std::uint64_t number = 0;  ///< another one whenever the file is put there or written
  };

  /// Whether a file is there to be read; one that could not be read is not deleted unread.
  bool canRead(std::string_view path, bool stepSucceeds);
  bool isFixed(std::string_view path) const { return isInUse(path) || protected_.contains(lower(path)); }
  bool isInUse(std::string_view path) const { return held_.contains(lower(path)) || isOpen(path); }
  bool isMissing(std::string_view folder) const;
  /// Whether a text can be written at this path.
  bool takes(std::string_view path) const;
  /// Bare names of the files of a folder, sorted.
  std::vector<std::string> namesIn(std::string_view folder) const;

  Journal& journal_;
  std::map<std::string, File> files_;
  std::set<std::string> folders_;
  std::set<std::string> missingFolders_;
  std::set<std::string> fullFolders_;
  std::map<std::string, int> unreachable_;  ///< looks that it takes a folder to answer
  std::set<std::string> held_;
  std::set<std::string> protected_;
  platform::Readings readings_;
  std::multiset<std::string> open_;
  std::uint64_t lastNumber_ = 0;
};

}  // namespace tellaxis::fake
