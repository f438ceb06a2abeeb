// Files: the file system as the rules see it, with Windows paths in code page 1252.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tellaxis::platform {

/// A file open for reading from its first byte on; closed when destroyed.
class InputFile {
 public:
  virtual ~InputFile() = default;

  /// Fills `buffer` from the file and returns how many bytes it got: 0 at the end of the file, nothing on a failure.
  virtual std::optional<std::size_t> read(std::span<char> buffer) = 0;
};

/// What a file is known again by: while it is the same, so are the file and what it holds.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t file = 0;  ///< its number on the device
  std::uint64_t size = 0;
  std::int64_t time = 0;  ///< of the last change of its content, in the system's own unit

  bool operator==(const FileIdentity&) const = default;
};

/// Who may read a file that is made.
enum class Readers : std::uint8_t {
  ownerAlone,
  asUsual,    ///< who may read the file that it replaces; without one, as the program was started
  everybody,  ///< on Windows: who may read the files of its folder
};

/// The files of a folder on their way to another one. Each is looked at when its turn comes, in the order of the names
/// without regard to case, and is kept open until the next one's, so that meanwhile nobody begins to write it.
class Passage {
 public:
  virtual ~Passage() = default;

  /// The bare name of the next file that can be read and moved, where a file of the same name is deleted first; nothing
  /// when there is none left. Left out, and found by a later passage, are: a file that its writer still holds; one that
  /// cannot be opened, taken away or put there; one that could not be moved, until it or its folders have changed; of
  /// names that differ in case alone all but the first; links to files.
  virtual std::optional<std::string> next() = 0;

  /// Whether the target folder has a file of this name, as far as it was seen when the first file was looked at.
  virtual bool isTaken() = 0;

  /// Moves the file to the target folder, where its name must not be taken.
  virtual bool move() = 0;
};

/// Paths are formed by plain concatenation ("C:\MERIDIA" and "\_Local.ini"). Names match as the computer's file system
/// matches them on Windows: without regard to case. A folder is never a file here, and hidden files are not seen.
/// A writer holds a file for as long as it has it open for writing.
class Files {
 public:
  virtual ~Files() = default;

  /// True when a file of this path exists. An empty path and a folder are no file.
  virtual bool exists(std::string_view path) = 0;

  /// The bare name, spelled as the folder holds it, of the file at `path`; nothing when there is none.
  virtual std::optional<std::string> lookUp(std::string_view path) = 0;

  /// Of the file at `path`; nothing when there is none.
  virtual std::optional<FileIdentity> identity(std::string_view path) = 0;

  virtual bool folderExists(std::string_view path) = 0;

  /// True for a folder on another computer, or on a disk that is mounted on first use, that does not answer now. May
  /// take as long as the system itself waits for such a computer.
  virtual bool isUnreachable(std::string_view folder) = 0;

  /// The present user's folder for passing things, without a trailing separator; empty where there is none.
  virtual std::string temporaryFolder() { return {}; }

  /// Creates one folder; its parent must exist.
  virtual bool createFolder(std::string_view path) = 0;

  /// The bare names of the files of `folder` (not its sub-folders), sorted by name without regard to case; nothing when
  /// it cannot be read.
  virtual std::optional<std::vector<std::string>> list(std::string_view folder) = 0;

  /// Begins to move files of `folder` (not its sub-folders) to the folder `target`; null when one of the two cannot be
  /// read.
  virtual std::unique_ptr<Passage> openPassage(std::string_view folder, std::string_view target) = 0;

  /// Copies a file, which must not be held by a writer, over `to`, whole or not at all: a reader of `to` never meets a
  /// half-written file. Only a file that may be written into, but not replaced, is written into as it stands.
  virtual bool copy(std::string_view from, std::string_view to) = 0;

  /// The same to a name that nothing in its folder may have, which costs the same in a folder of any size.
  virtual bool copyToNew(std::string_view from, std::string_view to) = 0;

  /// Renames `from`, which must not be held by a writer, to `to`, which must not exist.
  virtual bool move(std::string_view from, std::string_view to) = 0;

  /// Deletes one file, which must not be held by a writer. A missing file is a failure. A file that `openInput` or
  /// `copy` could not read when they were last asked for it is not deleted unread: the call fails.
  virtual bool remove(std::string_view path) = 0;

  /// Whether `remove` could delete the file, as far as can be seen without trying: its folder takes changes, and nobody
  /// else's right stands against it. False for a missing file.
  virtual bool canRemove(std::string_view path) = 0;

  /// Deletes every file of `folder`; sub-folders stay, and a link is removed itself, never what it points to. False
  /// when a file was left.
  virtual bool removeAll(std::string_view folder) = 0;

  /// Deletes an empty folder.
  virtual bool removeFolder(std::string_view path) = 0;

  /// Opens a file, which must not be held by a writer, for reading; null on a failure.
  virtual std::unique_ptr<InputFile> openInput(std::string_view path) = 0;

  /// Appends `text` to a file, creating it where it is missing (its folder must exist), and closes it.
  virtual bool append(std::string_view path, std::string_view text) = 0;

  /// Creates or replaces a file holding `text`, whole: a reader never meets half of it.
  virtual bool create(std::string_view path, std::string_view text, Readers readers) = 0;
};

}  // namespace tellaxis::platform
