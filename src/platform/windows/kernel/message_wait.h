// Message wait: waiting in a way that the system does not take for a program that hangs.
#pragma once

#include <windows.h>

namespace tellaxis::platform {

/// Waits for `handle` (null: for nothing) up to `milliseconds` and returns true when it was signalled. What other
/// programs and the system send to this thread's windows meanwhile is answered, or they would count as "(Non
/// risponde)"; input, timers and painting wait.
bool waitForMessages(HANDLE handle, DWORD milliseconds);

}  // namespace tellaxis::platform
