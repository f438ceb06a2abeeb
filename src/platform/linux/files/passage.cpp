// Passage: reading the folder, a reason for each file that is left out, and the move.
#include "platform/linux/files/passage.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/linux/files/file_name.h"
#include "platform/linux/files/finished_file.h"
#include "platform/linux/files/folder.h"
#include "platform/linux/files/new_file.h"
#include "platform/linux/files/replacement.h"
#include "platform/linux/kernel/reason.h"
#include "text/code_page.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

constexpr std::string_view unwritableName = "il nome non si scrive nella tabella codici 1252, o contiene \\";
constexpr std::string_view nameTwice = "il nome differisce da un altro solo per le maiuscole";

std::string endedWithSlash(std::string native) {
  if (!native.ends_with('/')) native += '/';
  return native;
}

}  // namespace

std::unique_ptr<Passage> LinuxPassage::open(PassageEnd from, PassageEnd to, SeenFiles& seen, Trace& trace) {
  std::unique_ptr<LinuxPassage> passage(new LinuxPassage(std::move(from), std::move(to), seen, trace));
  seen.openJobs.clear();
  if (!passage->readNames()) return nullptr;
  return passage;
}

LinuxPassage::LinuxPassage(PassageEnd from, PassageEnd to, SeenFiles& seen, Trace& trace)
    : from_(std::move(from)),
      to_(std::move(to)),
      seen_(seen),
      trace_(trace),
      movable_(from_.opened, to_.opened, [this](std::string_view capitals) { return hasName(capitals); }) {
  from_.native = endedWithSlash(std::move(from_.native));
  to_.native = endedWithSlash(std::move(to_.native));
}

bool LinuxPassage::hasName(std::string_view capitals) const {
  return std::ranges::binary_search(names_, capitals, {}, &Name::capitals);
}

bool LinuxPassage::readNames() {
  const bool read = readFolder(from_.opened, [&](const dirent64& entry) {
    if (!isListed(from_.opened, entry)) return;
    auto text = textOfName(entry.d_name);
    if (text && text->find('\\') == std::string::npos)
      names_.push_back({upperCase(*text), std::move(*text), entry.d_name});
    else
      seen_.leftOut.note(from_.shown, entry.d_name, std::string(unwritableName));
  });
  if (!read || names_.empty()) return read;
  struct stat status {};
  if (::fstat(from_.opened.number(), &status) != 0) return false;
  device_ = status.st_dev;
  onNetwork_ = isOnNetwork(from_.opened);
  if (!enoughDescriptors()) {
    errno = EMFILE;
    return false;
  }
  std::ranges::sort(names_);
  return true;
}

std::optional<std::string> LinuxPassage::next() {
  while (taken_ < names_.size()) {
    ++taken_;
    if (isRepeated()) {
      seen_.leftOut.note(from_.shown, name().text, std::string(nameTwice));
      continue;
    }
    const int reason = whyNot();
    if (reason == ETXTBSY || reason == EINPROGRESS || reason == ENOENT) continue;
    if (reason != 0)
      seen_.leftOut.note(from_.shown, name().text, reasonOf(reason));
    else if (!seen_.failedMoves.isStuck(from_.native + name().onDisk, file_, from_.opened, to_.opened))
      return name().text;
  }
  file_ = {};
  return std::nullopt;
}

bool LinuxPassage::isRepeated() const { return taken_ > 1 && names_[taken_ - 2].capitals == name().capitals; }

/// Why the file whose turn it is cannot be moved; 0 when it can be.
int LinuxPassage::whyNot() {
  struct stat status {};
  file_ = {};
  file_ = openRegularFile(from_.opened.number(), name().onDisk.c_str(), status);
  if (!file_) return errno;
  hold_ = holdOfFile(status);
  if (const int reason = whyUnfinished(seen_.settling, hold_, from_.native + name().onDisk, status); reason != 0)
    return reason;
  if (const int reason = movable_.whyNone(); reason != 0) return reason;
  return movable_.whyNot(status, name().capitals);
}

Hold LinuxPassage::holdOfFile(const struct stat& status) const {
  if (status.st_dev != device_) return holdOf(file_);
  return onNetwork_ ? Hold::unknown : holdOnThisComputer(file_);
}

bool LinuxPassage::move() {
  const std::string from = from_.native + name().onDisk;
  const std::string to = to_.native + utf8FromCodePage(name().text);
  if (moveFile(from, to)) {
    seen_.settling.forget(from);
    return true;
  }
  const int error = errno;
  seen_.failedMoves.add(from);
  trace_.failed("move", from_.shown + (from_.shown.ends_with('\\') ? "" : "\\") + name().text, reasonOf(error));
  return false;
}

bool LinuxPassage::moveFile(const std::string& from, const std::string& to) {
  if (movable_.isNameTaken(name().capitals)) {
    errno = EEXIST;
    return false;
  }
  const bool renamed = renameWithoutReplacing(from, to);
  if (renamed && hold_ == Hold::free) {
    seen_.openJobs.keep(to, std::move(file_));
    return true;
  }
  if (!renamed && (errno != EXDEV || !carryOver(file_, from, to))) return false;
  struct stat status {};
  // Of what this program itself brought there nobody else is the writer, whatever the system there can tell of that.
  if (::lstat(to.c_str(), &status) == 0) seen_.settling.accept(to, status);
  return true;
}

}  // namespace tellaxis::platform
