// File operations: finding, replacing and protecting files.
#include "platform/windows/files/file_operations.h"

#include <atomic>

#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

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

std::wstring temporaryBeside(const std::wstring& target) {
  static std::atomic<unsigned> count = 0;
  const std::size_t separator = target.find_last_of(L"\\/:");
  const std::wstring folder = separator == std::wstring::npos ? L"" : target.substr(0, separator + 1);
  return folder + L"~tlx" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count) + L".tmp";
}

bool replaceFile(const std::wstring& temporary, const std::wstring& target) {
  if (MoveFileExW(temporary.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) return true;
  discard(temporary);
  return false;
}

bool writeAll(HANDLE file, std::string_view text) {
  DWORD written = 0;
  return WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) && written == text.size();
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
