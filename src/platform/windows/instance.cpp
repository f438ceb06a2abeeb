// Instance: one copy a main folder, by a mutex that is named after it.
#include "platform/instance.h"

#include <windows.h>

#include <utility>

#include "platform/windows/files/folder_identity.h"
#include "platform/windows/kernel/end_event.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

class MutexLock : public InstanceLock {
 public:
  explicit MutexLock(UniqueHandle mutex) : mutex_(std::move(mutex)) {}

 private:
  UniqueHandle mutex_;
};

}  // namespace

std::unique_ptr<InstanceLock> lockMainFolder(std::string_view mainFolder) {
  const std::wstring name = L"Global\\Tellaxis " + folderIdentity(wideFromUtf8(mainFolder));
  UniqueHandle mutex(CreateMutexW(nullptr, FALSE, name.c_str()));
  if (!mutex || GetLastError() == ERROR_ALREADY_EXISTS) return nullptr;
  return std::make_unique<MutexLock>(std::move(mutex));
}

/// A mutex of another user's copy is refused for no other reason than that it is there.
std::string whyUnlockable(std::string_view /*mainFolder*/) { return {}; }

bool requestEnd(std::string_view mainFolder) {
  const UniqueHandle event = openEndEvent(mainFolder);
  return event && SetEvent(event.get());
}

}  // namespace tellaxis::platform
