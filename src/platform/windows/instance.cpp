// Instance: one copy a main folder, by a mutex that is named after it.
#include "platform/instance.h"

#include <windows.h>
// After windows.h, which it needs.
#include <tlhelp32.h>

#include <utility>

#include "platform/windows/files/folder_identity.h"
#include "platform/windows/files/stale_files.h"
#include "platform/windows/kernel/end_event.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

std::wstring nameOf(std::string_view mainFolder) {
  return L"Global\\Tellaxis " + folderIdentity(wideFromUtf8(mainFolder));
}

constexpr const wchar_t* programNames[] = {L"tellaxisd.exe", L"tellaxis.exe"};

/// The only other process that runs one of our programs; 0 where there is none, or more than one. The system does not
/// tell who made a mutex.
std::uint32_t onlyOtherCopy() {
  const UniqueHandle processes = owned(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (!processes) return 0;
  std::uint32_t found = 0;
  PROCESSENTRY32W entry = {};
  entry.dwSize = sizeof entry;
  for (BOOL more = Process32FirstW(processes.get(), &entry); more; more = Process32NextW(processes.get(), &entry)) {
    if (entry.th32ProcessID == GetCurrentProcessId()) continue;
    for (const wchar_t* const name : programNames) {
      if (lstrcmpiW(entry.szExeFile, name) != 0) continue;
      if (found != 0) return 0;
      found = entry.th32ProcessID;
    }
  }
  return found;
}

class MutexLock : public InstanceLock {
 public:
  explicit MutexLock(UniqueHandle mutex) : mutex_(std::move(mutex)) {}

 private:
  UniqueHandle mutex_;
};

}  // namespace

std::unique_ptr<InstanceLock> lockMainFolder(std::string_view mainFolder) {
  UniqueHandle mutex(CreateMutexW(nullptr, FALSE, nameOf(mainFolder).c_str()));
  if (!mutex || GetLastError() == ERROR_ALREADY_EXISTS) return nullptr;
  removeStaleFiles(wideFromUtf8(mainFolder) + L'\\');
  return std::make_unique<MutexLock>(std::move(mutex));
}

/// A mutex of another user's copy is refused for no other reason than that it is there.
std::string whyUnlockable(std::string_view /*mainFolder*/) { return {}; }

std::uint32_t thisProcess() { return GetCurrentProcessId(); }

std::optional<std::uint32_t> servingProcess(std::string_view mainFolder) {
  const UniqueHandle mutex = owned(OpenMutexW(SYNCHRONIZE, FALSE, nameOf(mainFolder).c_str()));
  if (!mutex && GetLastError() != ERROR_ACCESS_DENIED) return std::nullopt;
  return onlyOtherCopy();
}

bool requestEnd(std::string_view mainFolder) {
  const UniqueHandle event = openEndEvent(mainFolder);
  return event && SetEvent(event.get());
}

}  // namespace tellaxis::platform
