// Window call on Windows: a named event of the user's session.
#include "platform/window_call.h"

#include <utility>

#include "platform/windows/files/folder_identity.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

std::wstring nameOf(std::string_view mainFolder) {
  return L"Local\\Tellaxis window " + folderIdentity(wideFromUtf8(mainFolder));
}

class EventCall : public WindowCall {
 public:
  explicit EventCall(UniqueHandle event) : event_(std::move(event)) {}

  bool called() override { return WaitForSingleObject(event_.get(), 0) == WAIT_OBJECT_0; }

 private:
  UniqueHandle event_;
};

}  // namespace

std::unique_ptr<WindowCall> listenForWindowCalls(std::string_view mainFolder) {
  UniqueHandle event(CreateEventW(nullptr, FALSE, FALSE, nameOf(mainFolder).c_str()));
  if (!event) return nullptr;
  return std::make_unique<EventCall>(std::move(event));
}

bool callWindow(std::string_view mainFolder) {
  const UniqueHandle event = owned(OpenEventW(EVENT_MODIFY_STATE, FALSE, nameOf(mainFolder).c_str()));
  // The window of another process may come to the front only when the one that was started last allows it.
  AllowSetForegroundWindow(ASFW_ANY);
  return event && SetEvent(event.get());
}

}  // namespace tellaxis::platform
