// Message wait: sleeping between the messages that are sent.
#include "platform/windows/kernel/message_wait.h"

namespace tellaxis::platform {

namespace {

DWORD remaining(DWORD begun, DWORD milliseconds) {
  if (milliseconds == INFINITE) return INFINITE;
  const DWORD gone = GetTickCount() - begun;
  return gone >= milliseconds ? 0 : milliseconds - gone;
}

}  // namespace

bool waitForMessages(HANDLE handle, DWORD milliseconds) {
  const DWORD begun = GetTickCount();
  const DWORD count = handle == nullptr ? 0 : 1;
  for (;;) {
    const DWORD left = remaining(begun, milliseconds);
    const DWORD happened = MsgWaitForMultipleObjectsEx(count, &handle, left, QS_SENDMESSAGE, 0);
    if (happened != WAIT_OBJECT_0 + count) return count == 1 && happened == WAIT_OBJECT_0;
    // Sent messages are answered within this call; those that wait their turn stay.
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    if (left == 0) return false;
  }
}

}  // namespace tellaxis::platform
