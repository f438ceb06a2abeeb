// Session window: a hidden window on a thread of its own, to which the system says that the user leaves or that the
// computer shuts down (a program that uses windows gets no console event for it), and that the task bar is a new one.
#pragma once

#include <windows.h>

#include <thread>

#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

/// Where no window can be made nothing is heard.
class SessionWindow {
 public:
  /// Sets `stop`, an event, when the session ends.
  explicit SessionWindow(HANDLE stop);

  /// The job in hand is done: the end of the session, if it waits, goes on.
  ~SessionWindow();

  SessionWindow(const SessionWindow&) = delete;
  SessionWindow& operator=(const SessionWindow&) = delete;

 private:
  void run();
  LRESULT answer(HWND window, UINT message, WPARAM first, LPARAM second);
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);

  HANDLE stop_;
  UniqueHandle finished_;
  UniqueHandle ready_;
  HWND window_ = nullptr;
  std::thread thread_;
};

/// How many task bars have announced themselves since the program began; heard by a session window.
unsigned taskBarsCreated();

}  // namespace tellaxis::platform
