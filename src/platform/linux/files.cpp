// Files: each operation on the path as spelled, and on another spelling only where nothing is found there.
#include "platform/linux/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <thread>
#include <utility>

#include "platform/linux/files/file_name.h"
#include "platform/linux/files/file_status.h"
#include "platform/linux/files/finished_file.h"
#include "platform/linux/files/folder.h"
#include "platform/linux/files/new_file.h"
#include "platform/linux/files/replacement.h"
#include "platform/linux/files/writer_hold.h"
#include "platform/linux/kernel/reason.h"
#include "platform/linux/kernel/timed_write.h"
#include "platform/linux/kernel/uninterrupted.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

using std::chrono::milliseconds;

/// What is copied or moved is waited for where the system does not tell whether its writer has finished; what is looked
/// at on every tick is not.
constexpr milliseconds sourceTimeout{1000};
constexpr milliseconds noTimeout{0};

/// A file that was not read, a driver's answer as a rule, is about to be closed.
constexpr milliseconds removedTimeout{200};

bool nothingThere() { return errno == ENOENT || errno == ENOTDIR; }

/// Calls `operation` with the native path; where that finds nothing, once more with the other spelling of it. An
/// operation's result is true or an open descriptor when it succeeded, and leaves `errno` when not.
template <class Operation>
auto onWhatExists(const Paths& paths, std::string& native, Operation operation) {
  auto result = operation(native);
  if (result || !nothingThere()) return result;
  const int error = errno;
  Spelling other = paths.otherSpelling(native);
  errno = error;
  if (!other.exists) return result;
  native = std::move(other.path);
  return operation(native);
}

bool statusOf(const Paths& paths, std::string& native, struct stat& status) {
  return onWhatExists(paths, native, [&](const std::string& path) { return ::stat(path.c_str(), &status) == 0; });
}

bool failWith(int error) {
  errno = error;
  return false;
}

bool isFolder(const Descriptor& parent, const char* name) {
  struct stat status {};
  return ::fstatat(parent.number(), name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}

/// Waits a moment for whoever has the file open for writing.
bool isReleased(const Descriptor& file, milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  while (isHeld(file)) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(milliseconds(5));
  }
  return true;
}

class LinuxInputFile : public InputFile {
 public:
  LinuxInputFile(Descriptor file, std::string path, Trace& trace)
      : file_(std::move(file)), path_(std::move(path)), trace_(trace) {}

  std::optional<std::size_t> read(std::span<char> buffer) override {
    const ssize_t got = untilUninterrupted([&] { return ::read(file_.number(), buffer.data(), buffer.size()); });
    if (got >= 0) return static_cast<std::size_t>(got);
    trace_.failed("read", path_, reasonOf(errno));
    return std::nullopt;
  }

 private:
  Descriptor file_;
  std::string path_;
  Trace& trace_;
};

}  // namespace

bool LinuxFiles::exists(std::string_view path) { return fileAt(path).has_value(); }

std::optional<std::string> LinuxFiles::lookUp(std::string_view path) {
  const auto native = fileAt(path);
  return native ? textOfName(lastName(*native)) : std::nullopt;
}

std::optional<FileIdentity> LinuxFiles::identity(std::string_view path) {
  const auto native = fileAt(path);
  auto identity = native ? identityOf(*native) : std::nullopt;
  if (!identity) noteWith("identity", path, native ? errno : ENOENT);
  return identity;
}

bool LinuxFiles::folderExists(std::string_view path) {
  auto native = paths_.spelled(path);
  struct stat status {};
  return native && statusOf(paths_, *native, status) && S_ISDIR(status.st_mode);
}

bool LinuxFiles::isUnreachable(std::string_view folder) {
  auto native = paths_.spelled(folder);
  struct stat status {};
  return native && !statusOf(paths_, *native, status) && doesNotAnswer(*native, errno);
}

bool LinuxFiles::createFolder(std::string_view path) {
  const auto native = paths_.resolve(path);
  if (!native) return noteWith("createFolder", path, ENOENT);
  return note("createFolder", path, ::mkdir(native->c_str(), 0777) == 0);
}

std::optional<std::vector<std::string>> LinuxFiles::list(std::string_view folder) {
  auto native = paths_.spelled(folder);
  const Descriptor opened = native ? onWhatExists(paths_, *native, openFolder) : Descriptor();
  std::vector<std::string> names;
  const bool read = opened && readFolder(opened, [&](const dirent64& entry) {
                      auto text = textOfName(entry.d_name);
                      if (text && isListed(opened, entry)) names.push_back(std::move(*text));
                    });
  if (!read) {
    noteWith("list", folder, native ? errno : ENOENT);
    return std::nullopt;
  }
  std::sort(names.begin(), names.end(), lessIgnoringCase);
  return names;
}

std::unique_ptr<Passage> LinuxFiles::openPassage(std::string_view folder, std::string_view target) {
  auto from = openEnd(folder);
  auto to = from ? openEnd(target) : std::nullopt;
  if (!to) return nullptr;
  auto passage = LinuxPassage::open(std::move(*from), std::move(*to), seen_, trace_);
  if (passage == nullptr) noteWith("list", folder, errno);
  return passage;
}

std::optional<PassageEnd> LinuxFiles::openEnd(std::string_view folder) {
  auto native = paths_.spelled(folder);
  Descriptor opened = native ? onWhatExists(paths_, *native, openFolder) : Descriptor();
  if (opened) return PassageEnd{std::string(folder), std::move(*native), std::move(opened)};
  noteWith("list", folder, native ? errno : ENOENT);
  return std::nullopt;
}

/// Opens the file at `path` for its content; `native` becomes the path that it was found at.
Descriptor LinuxFiles::openFile(std::string_view path, std::string& native, milliseconds timeout) {
  const auto spelled = paths_.spelled(path);
  if (!spelled) {
    errno = ENOENT;
    return {};
  }
  native = *spelled;
  if (Descriptor job = seen_.openJobs.borrow(native)) return job;
  return onWhatExists(paths_, native,
                      [&](const std::string& file) { return openFinished(seen_.settling, file, timeout); });
}

/// The same, remembering for `remove` how it ended.
Descriptor LinuxFiles::openForContent(std::string_view path, std::string& native, milliseconds timeout) {
  Descriptor file = openFile(path, native, timeout);
  if (!file && nothingThere()) return file;
  const int error = errno;
  readings_.note(path, file ? Readings::Outcome::given : Readings::Outcome::refused);
  errno = error;
  return file;
}

bool LinuxFiles::copy(std::string_view from, std::string_view to) {
  std::string source;
  const auto target = paths_.spelled(to);
  if (!target) return noteWith("copy", to, ENOENT);
  Descriptor opened = openForContent(from, source, sourceTimeout);
  if (!opened) return noteWith("copy", from, errno);
  const bool copied = note("copy", to,
                           replaceContent(paths_, *target, {.orInPlace = true},
                                          [&](const Descriptor& file) { return copyAll(opened, file); }));
  seen_.openJobs.giveBack(source, std::move(opened));
  return copied;
}

bool LinuxFiles::copyToNew(std::string_view from, std::string_view to) {
  std::string source;
  const auto target = paths_.spelled(to);
  if (!target) return noteWith("copy", to, ENOENT);
  Descriptor opened = openForContent(from, source, sourceTimeout);
  if (!opened) return noteWith("copy", from, errno);
  const bool copied =
      note("copy", to,
           makeCopy(opened, *target) || (nothingThere() && makeCopy(opened, paths_.otherSpelling(*target).path)));
  seen_.openJobs.giveBack(source, std::move(opened));
  return copied;
}

bool LinuxFiles::makeCopy(const Descriptor& source, const std::string& to) {
  NewFile file(to, 0666);
  return file && copyAll(source, file.file()) && file.becomeTarget();
}

bool LinuxFiles::move(std::string_view from, std::string_view to) {
  const auto target = paths_.spelled(to);
  return note("move", from, target ? moveFile(std::string(from), *target) : failWith(ENOENT));
}

bool LinuxFiles::moveFile(const std::string& path, std::string to) {
  std::string from;
  const Descriptor opened = openFile(path, from, sourceTimeout);
  if (!opened) return false;
  Spelling target = paths_.otherSpelling(to);
  if (target.exists && target.path != from) return failWith(EEXIST);
  to = target.path.substr(0, folderLength(target.path)) + std::string(lastName(to));
  bool moved = renameWithoutReplacing(from, to);
  if (!moved && errno == EXDEV) moved = carryOver(opened, from, to);
  const int error = errno;
  struct stat status {};
  // Of what this program itself brought there nobody else is the writer, whatever the system there can tell of that.
  if (moved && ::lstat(to.c_str(), &status) == 0) seen_.settling.accept(to, status);
  if (moved) seen_.settling.forget(from);
  errno = error;
  return moved;
}

bool LinuxFiles::remove(std::string_view path) {
  auto native = paths_.spelled(path);
  if (!native) return noteWith("remove", path, ENOENT);
  return note("remove", path, removeFile(*native, readings_.take(path)));
}

/// What was refused to its reader is not deleted unread, though its writer may have finished since.
bool LinuxFiles::removeFile(std::string native, Readings::Outcome reading) {
  if (reading == Readings::Outcome::refused) return failWith(ECANCELED);
  if (const Descriptor job = seen_.openJobs.take(native)) return ::unlink(native.c_str()) == 0;
  const Descriptor file =
      onWhatExists(paths_, native, [](const std::string& path) { return openRegularFile(AT_FDCWD, path.c_str()); });
  if (!file && (nothingThere() || errno == ETXTBSY || errno == EMFILE || errno == ENFILE)) return false;
  if (file && !isReleased(file, reading == Readings::Outcome::none ? removedTimeout : noTimeout))
    return failWith(ETXTBSY);
  seen_.settling.forget(native);
  return ::unlink(native.c_str()) == 0;
}

bool LinuxFiles::canRemove(std::string_view path) {
  const auto native = fileAt(path);
  return native ? note("canRemove", path, canBeRemoved(*native)) : noteWith("canRemove", path, ENOENT);
}

bool LinuxFiles::removeAll(std::string_view folder) {
  auto native = paths_.spelled(folder);
  const Descriptor opened = native ? onWhatExists(paths_, *native, openFolder) : Descriptor();
  if (!opened) return noteWith("removeAll", folder, native ? errno : ENOENT);
  std::vector<std::string> names;
  bool removed = readFolder(opened, [&](const dirent64& entry) {
    if (!isHidden(entry.d_name) && entry.d_type != DT_DIR) names.emplace_back(entry.d_name);
  });
  if (!removed) noteWith("removeAll", folder, errno);
  for (const std::string& name : names) {
    if (::unlinkat(opened.number(), name.c_str(), 0) == 0 || errno == ENOENT) continue;
    const int error = errno;
    if (isFolder(opened, name.c_str())) continue;
    removed = noteWith("removeAll", std::string(folder) + '\\' + textOfName(name).value_or(name), error);
  }
  return removed;
}

bool LinuxFiles::removeFolder(std::string_view path) {
  auto native = paths_.spelled(path);
  if (!native) return noteWith("removeFolder", path, ENOENT);
  return note("removeFolder", path,
              onWhatExists(paths_, *native, [](const std::string& folder) { return ::rmdir(folder.c_str()) == 0; }));
}

std::unique_ptr<InputFile> LinuxFiles::openInput(std::string_view path) {
  std::string native;
  Descriptor opened = openForContent(path, native, noTimeout);
  if (!opened) {
    noteWith("openInput", path, errno);
    return nullptr;
  }
  return std::make_unique<LinuxInputFile>(std::move(opened), std::string(path), trace_);
}

bool LinuxFiles::append(std::string_view path, std::string_view text) {
  auto native = paths_.spelled(path);
  if (!native) return noteWith("append", path, ENOENT);
  constexpr int flags = O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC;
  Descriptor file(::open(native->c_str(), flags));
  if (!file && nothingThere()) {
    native = paths_.otherSpelling(*native).path;
    file = Descriptor(::open(native->c_str(), flags | O_CREAT, 0666));
  }
  return note("append", path, file && writeAll(file, text));
}

bool LinuxFiles::create(std::string_view path, std::string_view text, Readers readers) {
  const auto native = paths_.spelled(path);
  if (!native) return noteWith("create", path, ENOENT);
  const Replacing how{.ownerAlone = readers == Readers::ownerAlone, .forEverybody = readers == Readers::everybody};
  return note("create", path,
              replaceContent(paths_, *native, how, [&](const Descriptor& file) { return writeAll(file, text); }));
}

/// The native path of the visible file at `path`, spelled as on the disk.
std::optional<std::string> LinuxFiles::fileAt(std::string_view path) const {
  auto native = paths_.spelled(path);
  struct stat status {};
  if (!native || isHidden(lastName(*native)) || paths_.isKnownToBeAbsent(*native)) return std::nullopt;
  if (!statusOf(paths_, *native, status) || !S_ISREG(status.st_mode)) return std::nullopt;
  return native;
}

bool LinuxFiles::note(std::string_view operation, std::string_view subject, bool succeeded) {
  return succeeded || noteWith(operation, subject, errno);
}

bool LinuxFiles::noteWith(std::string_view operation, std::string_view subject, int error) {
  trace_.failed(operation, subject, reasonOf(error));
  return false;
}

}  // namespace tellaxis::platform
