// End event: a named event of the whole computer, so that an installer of another session finds it.
#include "platform/windows/kernel/end_event.h"

#include <sddl.h>

#include "platform/windows/files/folder_identity.h"

namespace tellaxis::platform {

namespace {

/// The system, administrators, and those who are logged on interactively may do everything with the event.
constexpr const wchar_t* whoMaySet = L"D:(A;;GA;;;SY)(A;;GA;;;BA)(A;;GA;;;IU)";

std::wstring nameOf(std::string_view mainFolder) {
  return L"Global\\Tellaxis end " + folderIdentity(wideFromUtf8(mainFolder));
}

struct LocalFreer {
  void operator()(void* memory) const { LocalFree(memory); }
};

}  // namespace

UniqueHandle createEndEvent(std::string_view mainFolder) {
  PSECURITY_DESCRIPTOR rights = nullptr;
  ConvertStringSecurityDescriptorToSecurityDescriptorW(whoMaySet, SDDL_REVISION_1, &rights, nullptr);
  const std::unique_ptr<void, LocalFreer> owner(rights);
  SECURITY_ATTRIBUTES attributes = {sizeof attributes, rights, FALSE};
  return UniqueHandle(CreateEventW(&attributes, TRUE, FALSE, nameOf(mainFolder).c_str()));
}

UniqueHandle openEndEvent(std::string_view mainFolder) {
  return owned(OpenEventW(EVENT_MODIFY_STATE, FALSE, nameOf(mainFolder).c_str()));
}

}  // namespace tellaxis::platform
