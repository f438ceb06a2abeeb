// Window call: by which a second copy of the program brings the first one's window to the front.
#pragma once

#include <memory>
#include <string_view>

namespace tellaxis::platform {

/// Heard by the copy that has the window, as long as this lives.
class WindowCall {
 public:
  virtual ~WindowCall() = default;

  /// True when another copy called since the last look.
  virtual bool called() = 0;
};

/// Begins to listen for calls to the window that serves `mainFolder`; null when that cannot be.
std::unique_ptr<WindowCall> listenForWindowCalls(std::string_view mainFolder);

/// Calls the window that serves `mainFolder`; false when there is none.
bool callWindow(std::string_view mainFolder);

}  // namespace tellaxis::platform
