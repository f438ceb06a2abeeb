// Profiles: the INI files of a Linux computer, used by many threads and processes at once.
#include "platform/linux/profiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <optional>
#include <span>
#include <thread>
#include <utility>

#include "platform/linux/kernel/reason.h"
#include "platform/linux/profiles/profile_file.h"
#include "platform/linux/profiles/profile_replacement.h"
#include "platform/linux/profiles/profile_text.h"

namespace tellaxis::platform {

namespace {

using Deadline = std::chrono::steady_clock::time_point;

constexpr std::chrono::milliseconds waitStep{1};

/// A file that was not changed for this long is not half-written, whoever keeps it open.
constexpr std::chrono::seconds settledAge{2};

constexpr std::string_view lockedReason = "il file \xE8 bloccato da un altro programma";
constexpr std::string_view openElsewhereReason = "un altro programma sta scrivendo il file";
constexpr std::string_view folderBusyReason = "la cartella \xE8 bloccata da un altro programma";
constexpr std::string_view changingReason = "il file continua a cambiare";
constexpr std::string_view noSectionReason = "manca la sezione";

/// Sleeps one step; false when the time is over.
bool waitUntil(Deadline deadline) {
  if (std::chrono::steady_clock::now() >= deadline) return false;
  std::this_thread::sleep_for(waitStep);
  return true;
}

bool isSettled(const struct stat& facts) {
  const auto changed = std::chrono::seconds(facts.st_mtim.tv_sec);
  return std::chrono::system_clock::now().time_since_epoch() - changed > settledAge;
}

/// True while waiting may bring a whole text.
bool isHeld(const ProfileFile& file) {
  return file.state() == FileState::locked || (file.state() == FileState::openElsewhere && !isSettled(file.facts()));
}

/// Another owner's file, or one of another computer, that was written a moment ago may be half of what it will be.
bool maySettle(Settling& settling, const std::string& path, const ProfileFile& file) {
  return file.writerUnknown() && !isSettled(file.facts()) && !settling.isSettled(path, file.facts());
}

std::string_view upToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

std::optional<std::string_view> upToNul(std::optional<std::string_view> text) {
  if (text) text = upToNul(*text);
  return text;
}

/// `text` as it fits into a buffer of `size` bytes with an ending NUL.
std::string_view fitted(std::string_view text, std::size_t size) { return text.substr(0, size == 0 ? 0 : size - 1); }

/// A list as it fits with another NUL behind it; one that does not is cut and its last name ended.
std::string fittedList(std::string names, std::size_t size) {
  if (names.size() + 2 > size) names.resize(size < 2 ? 0 : size - 2);
  return names;
}

std::string_view withoutTrailingBlanks(std::string_view text) {
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

std::string answer(std::string_view text, std::optional<std::string_view> section, std::optional<std::string_view> key,
                   std::string_view fallback, std::size_t size) {
  if (!section) return fittedList(listSections(text), size);
  if (!key) {
    std::string keys = listKeys(text, *section);
    return keys.empty() ? std::string(fitted(fallback, size)) : fittedList(std::move(keys), size);
  }
  return std::string(fitted(findValue(text, *section, *key).value_or(fallback), size));
}

/// What is to be stored, as `editFor` takes it.
struct Change {
  std::string_view section;
  std::optional<std::string_view> key;
  std::optional<std::string_view> value;

  std::optional<TextEdit> editOf(std::string_view text) const { return editFor(text, section, key, value); }
};

using Changes = std::span<const Change>;

std::string edited(std::string_view text, const TextEdit& edit) {
  std::string result;
  result.reserve(text.size() - (edit.end - edit.begin) + edit.replacement.size());
  return result.append(text.substr(0, edit.begin)).append(edit.replacement).append(text.substr(edit.end));
}

/// `text` with all the changes; nothing when it already says so.
std::optional<std::string> changed(std::string_view text, Changes changes) {
  std::optional<std::string> result;
  for (const Change& change : changes) {
    const std::string_view present = result ? std::string_view(*result) : text;
    if (const auto edit = change.editOf(present)) result = edited(present, *edit);
  }
  return result;
}

/// How one attempt to store ended. A passing reason is worth another attempt.
struct Attempt {
  enum class End { done, passing, failed } end = End::done;
  std::string reason;
};

Attempt passing(std::string_view reason) { return {Attempt::End::passing, std::string(reason)}; }

Attempt failure(int error) { return {Attempt::End::failed, reasonOf(error)}; }

/// What this program wrote itself needs no time to settle.
void acceptWritten(Settling& settling, const std::string& path, const FolderLock& lock, const std::string& name,
                   std::size_t size) {
  struct stat written {};
  if (::fstatat(lock.folder(), name.c_str(), &written, AT_SYMLINK_NOFOLLOW) != 0) return;
  if (written.st_size == static_cast<off_t>(size)) settling.accept(path, written);
}

Attempt attempt(Settling& settling, const std::string& path, Changes changes) {
  const std::optional<std::string> target = linkTarget(path);
  if (!target) return failure(ELOOP);
  const std::size_t folderEnd = target->rfind('/');
  const std::string name = target->substr(folderEnd + 1);
  if (name.empty()) return failure(ENOENT);
  const FolderLock lock(folderEnd == std::string::npos ? "." : target->substr(0, folderEnd + 1));
  if (lock.error() == EWOULDBLOCK) return passing(folderBusyReason);
  if (lock.error() != 0) return failure(lock.error());
  const ProfileFile current(lock.folder(), name.c_str());
  switch (current.state()) {
    case FileState::locked: return passing(lockedReason);
    case FileState::openElsewhere: return passing(openElsewhereReason);
    case FileState::failed: return failure(current.error());
    case FileState::absent:
    case FileState::read: break;
  }
  if (maySettle(settling, path, current)) return passing(changingReason);
  const auto text = changed(current.text(), changes);
  if (!text) return {};
  int error = 0;
  switch (replaceFile(lock, name.c_str(), current, *text, error)) {
    case Replaced::done: acceptWritten(settling, path, lock, name, text->size()); return {};
    case Replaced::changedMeanwhile: return passing(changingReason);
    case Replaced::failed: break;
  }
  return failure(error);
}

/// True when the file already says so, found without a lock: the way of nearly every write.
bool alreadySaid(const std::string& path, Changes changes) {
  const ProfileFile current(AT_FDCWD, path.c_str());
  return current.state() == FileState::read && !changed(current.text(), changes);
}

Attempt store(Settling& settling, const std::string& path, Changes changes, std::chrono::milliseconds longestWait) {
  if (alreadySaid(path, changes)) return {};
  const Deadline deadline = std::chrono::steady_clock::now() + longestWait;
  for (;;) {
    Attempt result = attempt(settling, path, changes);
    if (result.end != Attempt::End::passing || !waitUntil(deadline)) return result;
  }
}

/// The writes of a batch, in their order, as changes.
template <class Writes>
std::vector<Change> changesOf(const Writes& writes) {
  std::vector<Change> changes;
  changes.reserve(writes.size());
  for (const auto& write : writes)
    changes.push_back(
        {write.section, std::optional<std::string_view>(write.key), std::optional<std::string_view>(write.value)});
  return changes;
}

}  // namespace

LinuxProfiles::LinuxProfiles(std::function<std::string(std::string_view)> resolve, Trace& trace, ProfileWaits waits)
    : resolve_(std::move(resolve)), trace_(trace), waits_(waits) {}

std::string LinuxProfiles::read(std::optional<std::string_view> section, std::optional<std::string_view> key,
                                std::string_view fallback, std::size_t size, std::string_view file) {
  section = upToNul(section);
  key = upToNul(key);
  fallback = withoutTrailingBlanks(upToNul(fallback));
  const std::string path = resolve_(file);
  const Deadline deadline = std::chrono::steady_clock::now() + waits_.read;
  const Deadline settled = std::chrono::steady_clock::now() + waits_.settle;
  for (;;) {
    const ProfileFile current(AT_FDCWD, path.c_str());
    if (isHeld(current) && waitUntil(deadline)) continue;
    if (maySettle(settling_, path, current) && waitUntil(settled)) continue;
    if (current.state() == FileState::locked) trace_.failed("lettura INI", file, lockedReason);
    if (current.state() == FileState::failed) trace_.failed("lettura INI", file, reasonOf(current.error()));
    const bool isRead = current.state() == FileState::read || current.state() == FileState::openElsewhere;
    const auto held = held_.find(path);
    if (held != held_.end() && (isRead || current.state() == FileState::absent)) {
      const auto changes = changesOf(held->second.writes);
      const auto text = changed(current.text(), changes);
      return answer(text ? std::string_view(*text) : current.text(), section, key, fallback, size);
    }
    if (isRead) return answer(current.text(), section, key, fallback, size);
    return std::string(fitted(fallback, size));
  }
}

bool LinuxProfiles::write(std::optional<std::string_view> section, std::optional<std::string_view> key,
                          std::optional<std::string_view> value, std::string_view file) {
  Attempt result{Attempt::End::failed, std::string(noSectionReason)};
  if (section) {
    const Change change{upToNul(*section), upToNul(key), upToNul(value)};
    if (batching_) {
      HeldFile& held = held_.try_emplace(resolve_(file), HeldFile{std::string(file), {}}).first->second;
      held.writes.push_back({std::string(change.section), std::optional<std::string>(change.key),
                             std::optional<std::string>(change.value)});
      return true;
    }
    result = store(settling_, resolve_(file), {&change, 1}, waits_.write);
  }
  if (result.end != Attempt::End::done) trace_.failed("scrittura INI", file, result.reason);
  return result.end == Attempt::End::done;
}

void LinuxProfiles::endBatch() {
  batching_ = false;
  for (const auto& [path, held] : std::exchange(held_, {})) {
    const auto changes = changesOf(held.writes);
    const Attempt result = store(settling_, path, changes, waits_.write);
    if (result.end != Attempt::End::done) trace_.failed("scrittura INI", held.file, result.reason);
  }
}

}  // namespace tellaxis::platform
