// Files: each operation on the path as spelled, and on another spelling only where nothing is found there.
#include "platform/linux/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <utility>

#include "platform/linux/files/file_name.h"
#include "platform/linux/files/file_status.h"
#include "platform/linux/files/folder.h"
#include "platform/linux/files/transfer.h"
#include "platform/linux/kernel/reason.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

bool isHidden(std::string_view name) { return name.starts_with('.'); }

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

Descriptor openExisting(const Paths& paths, std::string& native) {
  return onWhatExists(paths, native, [](const std::string& path) { return openRegularFile(path); });
}

/// Asks for a lease, which the system grants only while nobody has the file open for writing. Where it gives no leases
/// (another owner's file, a network file system) nobody is known to hold the file. Closing the file ends the lease.
bool isHeldByWriter(const Descriptor& file) {
  // Should somebody open the file for writing during these microseconds, the notice must not end this program.
  ::fcntl(file.number(), F_SETSIG, SIGURG);
  return ::fcntl(file.number(), F_SETLEASE, F_RDLCK) != 0 && errno == EAGAIN;
}

bool isHeldByWriter(const Descriptor& folder, const char* name) {
  const Descriptor file(::openat(folder.number(), name, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  // Somebody who shares the file over the network may have it to himself for as long as he wants.
  return file ? isHeldByWriter(file) : errno == EWOULDBLOCK;
}

bool failWith(int error) {
  errno = error;
  return false;
}

bool moveFile(const Paths& paths, std::string from, std::string to) {
  const Descriptor opened = openExisting(paths, from);
  if (!opened && errno != EACCES) return false;
  if (opened && isHeldByWriter(opened)) return failWith(ETXTBSY);
  Spelling target = paths.otherSpelling(to);
  if (target.exists && target.path != from) return failWith(EEXIST);
  target.path.replace(target.path.size() - lastName(target.path).size(), std::string::npos, lastName(to));
  to = std::move(target.path);
  if (renameWithoutReplacing(from, to)) return true;
  return errno == EXDEV && opened && carryOver(opened, from, to);
}

bool isFolder(const Descriptor& parent, const char* name) {
  struct stat status {};
  return ::fstatat(parent.number(), name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}

bool isListed(const Descriptor& folder, const dirent64& entry) {
  if (isHidden(entry.d_name) || entry.d_type == DT_DIR) return false;
  if (entry.d_type == DT_REG) return true;
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
  struct stat status {};
  return ::fstatat(folder.number(), entry.d_name, &status, 0) == 0 && S_ISREG(status.st_mode);
}

class LinuxInputFile : public InputFile {
 public:
  LinuxInputFile(Descriptor file, std::string path, Trace& trace)
      : file_(std::move(file)), path_(std::move(path)), trace_(trace) {}

  std::optional<std::size_t> read(std::span<char> buffer) override {
    for (;;) {
      const ssize_t got = ::read(file_.number(), buffer.data(), buffer.size());
      if (got >= 0) return static_cast<std::size_t>(got);
      if (errno == EINTR) continue;
      trace_.failed("read", path_, reasonOf(errno));
      return std::nullopt;
    }
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

bool LinuxFiles::createFolder(std::string_view path) {
  const auto native = paths_.resolve(path);
  if (!native) return noteWith("createFolder", path, ENOENT);
  return note("createFolder", path, ::mkdir(native->c_str(), 0777) == 0);
}

std::optional<std::vector<std::string>> LinuxFiles::list(std::string_view folder) {
  auto native = paths_.spelled(folder);
  const Descriptor opened = native ? onWhatExists(paths_, *native, openFolder) : Descriptor();
  if (!opened) {
    noteWith("list", folder, native ? errno : ENOENT);
    return std::nullopt;
  }
  std::vector<std::string> names;
  const bool read = readFolder(opened, [&](const dirent64& entry) {
    if (!isListed(opened, entry) || isHeldByWriter(opened, entry.d_name)) return;
    if (auto name = textOfName(entry.d_name))
      names.push_back(std::move(*name));
    else
      noteUnreadableName(folder, entry.d_name);
  });
  if (!note("list", folder, read)) return std::nullopt;
  std::sort(names.begin(), names.end(), lessIgnoringCase);
  return names;
}

bool LinuxFiles::copy(std::string_view from, std::string_view to) {
  auto source = paths_.spelled(from);
  const auto target = paths_.spelled(to);
  if (!source || !target) return noteWith("copy", source ? to : from, ENOENT);
  const Descriptor opened = openExisting(paths_, *source);
  if (!opened) return noteWith("copy", from, errno);
  return note("copy", to, replaceContent(paths_, *target, Permissions::usual, [&](const Descriptor& file) {
                return copyAll(opened, file);
              }));
}

bool LinuxFiles::move(std::string_view from, std::string_view to) {
  auto source = paths_.spelled(from);
  auto target = paths_.spelled(to);
  if (!source || !target) return noteWith("move", from, ENOENT);
  return note("move", from, moveFile(paths_, std::move(*source), std::move(*target)));
}

bool LinuxFiles::remove(std::string_view path) {
  auto native = paths_.spelled(path);
  if (!native) return noteWith("remove", path, ENOENT);
  return note("remove", path,
              onWhatExists(paths_, *native, [](const std::string& file) { return ::unlink(file.c_str()) == 0; }));
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
  auto native = paths_.spelled(path);
  Descriptor opened = native ? openExisting(paths_, *native) : Descriptor();
  if (!opened) {
    noteWith("openInput", path, native ? errno : ENOENT);
    return nullptr;
  }
  return std::make_unique<LinuxInputFile>(std::move(opened), std::string(path), trace_);
}

bool LinuxFiles::append(std::string_view path, std::string_view text) {
  auto native = paths_.spelled(path);
  if (!native) return noteWith("append", path, ENOENT);
  constexpr int flags = O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  Descriptor file(::open(native->c_str(), flags));
  if (!file && nothingThere()) {
    native = paths_.otherSpelling(*native).path;
    file = Descriptor(::open(native->c_str(), flags | O_CREAT, 0666));
  }
  return note("append", path, file && writeAll(file, text));
}

bool LinuxFiles::create(std::string_view path, std::string_view text, bool ownerOnly) {
  const auto native = paths_.spelled(path);
  if (!native) return noteWith("create", path, ENOENT);
  return note("create", path,
              replaceContent(paths_, *native, ownerOnly ? Permissions::ownerAlone : Permissions::usual,
                             [&](const Descriptor& file) { return writeAll(file, text); }));
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

void LinuxFiles::noteUnreadableName(std::string_view folder, std::string_view name) {
  if (unreadableNames_.size() < 100 && unreadableNames_.insert(std::string(folder) + '\\' + std::string(name)).second)
    trace_.failed("list", folder, "un nome di file non si scrive nella tabella codici 1252: " + std::string(name));
}

}  // namespace tellaxis::platform
