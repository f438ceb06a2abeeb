// Files of Windows: looking up, copying, moving, deleting, reading and writing.
#include "platform/windows/files.h"

#include <algorithm>

#include "platform/files/listed_passage.h"
#include "platform/windows/files/file_operations.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

constexpr DWORD anySharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class OpenFile : public InputFile {
 public:
  OpenFile(UniqueHandle handle, std::string path, Trace& trace)
      : handle_(std::move(handle)), path_(std::move(path)), trace_(trace) {}

  std::optional<std::size_t> read(std::span<char> buffer) override {
    DWORD got = 0;
    if (ReadFile(handle_.get(), buffer.data(), static_cast<DWORD>(buffer.size()), &got, nullptr)) return got;
    failed(trace_, "read", path_);
    return std::nullopt;
  }

 private:
  UniqueHandle handle_;
  std::string path_;
  Trace& trace_;
};

std::wstring upperCase(std::wstring text) {
  CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

void sortWithoutRegardToCase(std::vector<std::wstring>& names) {
  std::ranges::sort(names, [](const std::wstring& left, const std::wstring& right) {
    const std::wstring upperLeft = upperCase(left);
    const std::wstring upperRight = upperCase(right);
    return upperLeft != upperRight ? upperLeft < upperRight : left < right;
  });
}

/// Opening without sharing the right to write fails while anybody has the file open for writing.
UniqueHandle openWithoutWriters(const std::wstring& path) {
  return owned(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr));
}

/// Held is also what could not be deleted at the moment: after the job it would stay, and be done once more.
bool isHeld(const std::wstring& path) {
  const UniqueHandle file = owned(CreateFileW(path.c_str(), GENERIC_READ | DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                              nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  return !file && GetLastError() == ERROR_SHARING_VIOLATION;
}

/// The copy under its temporary name, which outlives a failure never.
std::optional<std::wstring> copyAside(const std::wstring& source, const std::wstring& target) {
  // Not tried again here: the folder above may simply not be ours to write in.
  if (auto above = temporaryAbove(target); above && copyToNew(source, *above)) return above;
  auto beside = temporaryBeside(target);
  if (Retries().tryAgain([&] { return copyToNew(source, beside); })) return beside;
  return std::nullopt;
}

/// Opens a file for its content, remembering how that ended for the day when it is to be deleted.
UniqueHandle openForContent(Readings& readings, std::string_view path) {
  const std::wstring name = wide(path);
  UniqueHandle file;
  Retries().tryAgain([&] { return (file = openWithoutWriters(name)) != nullptr; });
  const DWORD reason = GetLastError();
  if (file)
    readings.note(path, Readings::Outcome::given);
  else if (reason != ERROR_FILE_NOT_FOUND && reason != ERROR_PATH_NOT_FOUND)
    readings.note(path, Readings::Outcome::refused);
  SetLastError(reason);
  return file;
}

bool isThere(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

bool canBeDeleted(const std::wstring& path) {
  return owned(CreateFileW(path.c_str(), DELETE, anySharing, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) !=
         nullptr;
}

constexpr std::string_view unreadReason = "non \xE8 stato letto, e perci\xF2 resta";

/// The folder takes no new file, or the target, which another program holds, no other in its place.
bool isForbidden(DWORD reason) { return reason == ERROR_ACCESS_DENIED || reason == ERROR_SHARING_VIOLATION; }

}  // namespace

bool WindowsFiles::exists(std::string_view path) { return findFile(wide(path)).has_value(); }

std::optional<std::string> WindowsFiles::lookUp(std::string_view path) {
  const auto name = findFile(wide(path));
  return name ? narrow(*name) : std::nullopt;
}

std::optional<FileIdentity> WindowsFiles::identity(std::string_view path) {
  const UniqueHandle file = owned(CreateFileW(wide(path).c_str(), 0, anySharing, nullptr, OPEN_EXISTING, 0, nullptr));
  BY_HANDLE_FILE_INFORMATION information;
  if (!file || !GetFileInformationByHandle(file.get(), &information)) {
    failed(trace_, "identity", path);
    return std::nullopt;
  }
  const auto joined = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32U | low; };
  return FileIdentity{.device = information.dwVolumeSerialNumber,
                      .file = joined(information.nFileIndexHigh, information.nFileIndexLow),
                      .size = joined(information.nFileSizeHigh, information.nFileSizeLow),
                      .time = static_cast<std::int64_t>(joined(information.ftLastWriteTime.dwHighDateTime,
                                                               information.ftLastWriteTime.dwLowDateTime))};
}

bool WindowsFiles::folderExists(std::string_view path) {
  const DWORD attributes = GetFileAttributesW(wide(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool WindowsFiles::isUnreachable(std::string_view folder) { return doesNotAnswer(wide(folder)); }

std::string WindowsFiles::temporaryFolder() {
  wchar_t path[MAX_PATH + 1];
  const DWORD length = GetTempPathW(MAX_PATH + 1, path);
  if (length <= 1 || length > MAX_PATH) return {};
  return narrow({path, length - 1}).value_or("");
}

bool WindowsFiles::createFolder(std::string_view path) {
  return CreateDirectoryW(wide(path).c_str(), nullptr) || failed(trace_, "createFolder", path);
}

std::optional<std::vector<std::string>> WindowsFiles::list(std::string_view folder) {
  auto found = filesOf(wide(folder));
  if (!found) {
    failed(trace_, "list", folder);
    return std::nullopt;
  }
  sortWithoutRegardToCase(*found);
  std::vector<std::string> names;
  for (const std::wstring& name : *found)
    if (auto narrowName = narrow(name)) names.push_back(std::move(*narrowName));
  return names;
}

std::unique_ptr<Passage> WindowsFiles::openPassage(std::string_view folder, std::string_view target) {
  auto found = filesOf(wide(folder));
  if (!found || !folderExists(target)) {
    failed(trace_, "list", found ? target : folder);
    return nullptr;
  }
  sortWithoutRegardToCase(*found);
  std::vector<std::string> names;
  for (const std::wstring& name : *found) {
    if (auto narrowName = narrow(name))
      names.push_back(std::move(*narrowName));
    else
      failed(trace_, "list", narrowForReading(name), "il nome ha caratteri che non si possono usare");
  }
  const auto isMovable = [this, from = wide(folder) + L'\\', to = wide(target) + L'\\'](std::string_view name) {
    return this->isMovable(from + wide(name), to + wide(name));
  };
  return std::make_unique<ListedPassage>(*this, folder, target, std::move(names), isMovable);
}

bool WindowsFiles::isMovable(const std::wstring& file, const std::wstring& target) {
  if (isHeld(file)) return false;
  if (!openWithoutWriters(file)) return failed(trace_, "list", narrowForReading(file));
  return !isThere(target) || canBeDeleted(target);
}

bool WindowsFiles::copy(std::string_view from, std::string_view to) {
  const UniqueHandle source = openForContent(readings_, from);
  if (!source) return failed(trace_, "copy", from);
  const std::wstring target = wide(to);
  const auto temporary = copyAside(wide(from), target);
  if (temporary && replaceFile(*temporary, target)) return true;
  return (isForbidden(GetLastError()) && overwrite(source.get(), target)) || failed(trace_, "copy", to);
}

bool WindowsFiles::copyToNew(std::string_view from, std::string_view to) {
  if (!isThere(wide(to))) return copy(from, to);
  SetLastError(ERROR_ALREADY_EXISTS);
  return failed(trace_, "copy", to);
}

bool WindowsFiles::move(std::string_view from, std::string_view to) {
  const std::wstring source = wide(from);
  const std::wstring target = wide(to);
  const bool moved = Retries().tryAgain([&] {
    // Held open until the file has its new name, it keeps new writers out.
    const UniqueHandle guard = openWithoutWriters(source);
    return guard && MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_COPY_ALLOWED);
  });
  return moved || failed(trace_, "move", from);
}

bool WindowsFiles::remove(std::string_view path) {
  if (readings_.take(path) == Readings::Outcome::refused) return failed(trace_, "remove", path, unreadReason);
  const std::wstring name = wide(path);
  const auto step = [&] {
    // Who writes may allow that the file is deleted meanwhile; what he writes would be lost.
    return (openWithoutWriters(name) || GetLastError() != ERROR_SHARING_VIOLATION) && removeFile(name);
  };
  // A folder is refused in the same words as a file that somebody holds.
  const bool removed = folderExists(path) ? removeFile(name) : Retries().tryAgain(step);
  return removed || failed(trace_, "remove", path);
}

bool WindowsFiles::canRemove(std::string_view path) {
  const std::wstring name = wide(path);
  const UniqueHandle file = owned(CreateFileW(name.c_str(), DELETE, anySharing, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file) return failed(trace_, "canRemove", path);
  if ((GetFileAttributesW(name.c_str()) & FILE_ATTRIBUTE_READONLY) == 0) return true;
  return failed(trace_, "canRemove", path, systemReason(ERROR_ACCESS_DENIED));
}

bool WindowsFiles::removeAll(std::string_view folder) {
  const std::wstring wideFolder = wide(folder);
  const auto names = filesOf(wideFolder);
  if (!names) return failed(trace_, "removeAll", folder);
  const std::wstring before = wideFolder + L'\\';
  bool allGone = true;
  Retries retries;
  for (const std::wstring& name : *names) {
    if (retries.tryAgain([&] { return removeFile(before + name); })) continue;
    allGone = failed(trace_, "removeAll", std::string(folder).append("\\").append(narrowForReading(name)));
  }
  return allGone;
}

bool WindowsFiles::removeFolder(std::string_view path) {
  return RemoveDirectoryW(wide(path).c_str()) || failed(trace_, "removeFolder", path);
}

std::unique_ptr<InputFile> WindowsFiles::openInput(std::string_view path) {
  UniqueHandle handle = openForContent(readings_, path);
  if (handle) return std::make_unique<OpenFile>(std::move(handle), std::string(path), trace_);
  failed(trace_, "openInput", path);
  return nullptr;
}

bool WindowsFiles::append(std::string_view path, std::string_view text) {
  const UniqueHandle handle = owned(CreateFileW(wide(path).c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr,
                                                OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  return (handle && writeAll(handle.get(), text)) || failed(trace_, "append", path);
}

bool WindowsFiles::create(std::string_view path, std::string_view text, Readers readers) {
  const std::wstring target = wide(path);
  const std::wstring temporary = temporaryBeside(target);
  return (createWith(temporary, text, readers == Readers::ownerAlone) && replaceFile(temporary, target)) ||
         failed(trace_, "create", path);
}

}  // namespace tellaxis::platform
