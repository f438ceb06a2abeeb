// File operations: finding, replacing and protecting files.
#include "platform/windows/files/file_operations.h"

#include <array>
#include <atomic>

#include "platform/windows/kernel/message_wait.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

constexpr DWORD longestRefusal = 2'000;  // milliseconds
constexpr DWORD betweenAttempts = 50;

constexpr DWORD unseen = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

struct SearchCloser {
  void operator()(HANDLE search) const { FindClose(search); }
};
using Search = std::unique_ptr<void, SearchCloser>;

Search startSearch(const std::wstring& pattern, WIN32_FIND_DATAW& found) {
  return Search(owned(FindFirstFileW(pattern.c_str(), &found)).release());
}

/// A list of rights that names the present user and nobody else.
class OwnerOnly {
 public:
  OwnerOnly() {
    HANDLE opened = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened)) return;
    const UniqueHandle token(opened);
    DWORD size = 0;
    if (!GetTokenInformation(token.get(), TokenUser, user_, sizeof user_, &size)) return;
    PSID owner = reinterpret_cast<TOKEN_USER*>(user_)->User.Sid;
    PACL list = reinterpret_cast<ACL*>(list_);
    usable_ = InitializeAcl(list, sizeof list_, ACL_REVISION) &&
              AddAccessAllowedAce(list, ACL_REVISION, FILE_ALL_ACCESS, owner) &&
              InitializeSecurityDescriptor(&descriptor_, SECURITY_DESCRIPTOR_REVISION) &&
              SetSecurityDescriptorDacl(&descriptor_, TRUE, list, FALSE) &&
              SetSecurityDescriptorControl(&descriptor_, SE_DACL_PROTECTED, SE_DACL_PROTECTED);
  }

  /// Null when the rights could not be put together; the last error says why.
  SECURITY_ATTRIBUTES* attributes() { return usable_ ? &attributes_ : nullptr; }

 private:
  bool usable_ = false;
  alignas(TOKEN_USER) char user_[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE] = {};
  alignas(ACL) char list_[sizeof(ACL) + sizeof(ACCESS_ALLOWED_ACE) + SECURITY_MAX_SID_SIZE] = {};
  SECURITY_DESCRIPTOR descriptor_ = {};
  SECURITY_ATTRIBUTES attributes_ = {sizeof attributes_, &descriptor_, FALSE};
};

UniqueHandle createNew(const std::wstring& path, SECURITY_ATTRIBUTES* rights) {
  return owned(CreateFileW(path.c_str(), GENERIC_WRITE, 0, rights, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
}

/// Deletes a file without changing the last error, which tells of the step that failed before.
void discard(const std::wstring& path) {
  const DWORD reason = GetLastError();
  DeleteFileW(path.c_str());
  SetLastError(reason);
}

/// Opening it for oneself alone fails while anybody has the file open in any way.
bool heldBySomebody(const std::wstring& path) {
  const UniqueHandle alone = owned(CreateFileW(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  return !alone && GetLastError() == ERROR_SHARING_VIOLATION;
}

/// "X:\" or "\\computer\share\"; empty for a path without either.
std::wstring rootOf(const std::wstring& path) {
  if (path.size() >= 2 && path[1] == L':') return path.substr(0, 2) + L'\\';
  const std::size_t share = path.starts_with(L"\\\\") ? path.find(L'\\', 2) : std::wstring::npos;
  return share == std::wstring::npos ? std::wstring() : path.substr(0, path.find(L'\\', share + 1)) + L'\\';
}

/// A drive that is to be connected to another computer at each log-on, whether it is now or not.
bool isConnection(const std::wstring& drive) {
  HKEY key = nullptr;
  const std::wstring connection = L"Network\\" + drive.substr(0, 1);
  if (RegOpenKeyExW(HKEY_CURRENT_USER, connection.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

}  // namespace

std::optional<std::wstring> findFile(const std::wstring& path) {
  if (path.find_first_of(L"*?") != std::wstring::npos) return std::nullopt;
  WIN32_FIND_DATAW found;
  const Search search = startSearch(path, found);
  if (!search || (found.dwFileAttributes & unseen) != 0) return std::nullopt;
  return found.cFileName;
}

std::optional<std::vector<std::wstring>> filesOf(const std::wstring& folder) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW found;
  const Search search = startSearch(folder + L"\\*", found);
  if (!search) {
    if (GetLastError() == ERROR_FILE_NOT_FOUND) return names;
    return std::nullopt;
  }
  do {
    if ((found.dwFileAttributes & unseen) == 0) names.emplace_back(found.cFileName);
  } while (FindNextFileW(search.get(), &found));
  if (GetLastError() != ERROR_NO_MORE_FILES) return std::nullopt;
  return names;
}

bool doesNotAnswer(const std::wstring& path) {
  const std::wstring root = rootOf(path);
  if (root.empty()) return false;
  const bool isShare = root.front() == L'\\';
  const UINT type = isShare ? DRIVE_REMOTE : GetDriveTypeW(root.c_str());
  if (type == DRIVE_NO_ROOT_DIR) return isConnection(root);
  return type == DRIVE_REMOTE && GetFileAttributesW(root.c_str()) == INVALID_FILE_ATTRIBUTES;
}

std::wstring temporaryBeside(const std::wstring& target) {
  static std::atomic<unsigned> count = 0;
  const std::size_t separator = target.find_last_of(L"\\/:");
  const std::wstring folder = separator == std::wstring::npos ? L"" : target.substr(0, separator + 1);
  const std::wstring number = std::to_wstring(GetCurrentProcessId()) + L'-' + std::to_wstring(++count);
  return folder + std::wstring(temporaryBegin) + number + std::wstring(temporaryEnd);
}

std::optional<std::wstring> temporaryAbove(const std::wstring& target) {
  const std::size_t end = target.find_last_of(L"\\/");
  if (end == std::wstring::npos || end == 0 || target[end - 1] == L':') return std::nullopt;
  const std::size_t above = target.find_last_of(L"\\/", end - 1);
  // The first two parts of a share's path are no folders.
  const bool ofShare = target.starts_with(L"\\\\");
  if (above == std::wstring::npos || (ofShare && target.find(L'\\', target.find(L'\\', 2) + 1) >= end))
    return std::nullopt;
  return temporaryBeside(target.substr(0, end));
}

bool Retries::tryAgain(const std::function<bool()>& step) {
  while (!step()) {
    const DWORD reason = GetLastError();
    const bool inTheWay =
        reason == ERROR_ACCESS_DENIED || reason == ERROR_SHARING_VIOLATION || reason == ERROR_LOCK_VIOLATION;
    if (!begun_) begun_ = GetTickCount();
    if (!inTheWay || GetTickCount() - *begun_ >= longestRefusal) {
      SetLastError(reason);
      return false;
    }
    waitForMessages(nullptr, betweenAttempts);
  }
  return true;
}

bool copyToNew(const std::wstring& from, const std::wstring& to) {
  if (!CopyFileW(from.c_str(), to.c_str(), TRUE)) return false;
  SetFileAttributesW(to.c_str(), FILE_ATTRIBUTE_NORMAL);
  return true;
}

bool removeFile(const std::wstring& path) {
  if (heldBySomebody(path))
    if (const auto away = temporaryAbove(path); away && MoveFileExW(path.c_str(), away->c_str(), 0)) {
      if (DeleteFileW(away->c_str())) return true;
      const DWORD reason = GetLastError();
      MoveFileExW(away->c_str(), path.c_str(), 0);
      SetLastError(reason);
      return false;
    }
  return DeleteFileW(path.c_str()) != FALSE;
}

bool replaceFile(const std::wstring& temporary, const std::wstring& target) {
  if (Retries().tryAgain([&] {
        return MoveFileExW(temporary.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
      }))
    return true;
  discard(temporary);
  return false;
}

bool writeAll(HANDLE file, std::string_view text) {
  DWORD written = 0;
  return WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) && written == text.size();
}

bool overwrite(HANDLE from, const std::wstring& target) {
  const UniqueHandle file =
      owned(CreateFileW(target.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file || !SetEndOfFile(file.get())) return false;
  std::array<char, 16 * 1024> buffer;
  for (;;) {
    DWORD got = 0;
    if (!ReadFile(from, buffer.data(), static_cast<DWORD>(buffer.size()), &got, nullptr)) return false;
    if (got == 0) return true;
    if (!writeAll(file.get(), {buffer.data(), got})) return false;
  }
}

bool createWith(const std::wstring& path, std::string_view text, bool ownerOnly) {
  OwnerOnly rights;
  if (ownerOnly && rights.attributes() == nullptr) return false;
  UniqueHandle file = createNew(path, ownerOnly ? rights.attributes() : nullptr);
  if (!file) return false;
  if (writeAll(file.get(), text)) return true;
  file.reset();
  discard(path);
  return false;
}

}  // namespace tellaxis::platform
