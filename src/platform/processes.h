// Processes: starting programs with a window style, and waiting for one to end.
#pragma once

#include <cstdint>
#include <string_view>

namespace tellaxis::platform {

/// How a started program shows its window; the numbers are those of the system's process start.
enum class WindowStyle : std::int16_t { hidden = 0, minimised = 2, minimisedWithoutFocus = 6 };

/// A program once started; 0 is none.
using ProcessId = std::uint32_t;

/// Something to wait on; 0 is none.
using ProcessHandle = std::uintptr_t;

class Processes {
 public:
  virtual ~Processes() = default;

  /// Starts a command line, which means what `command_line.h` says: the program is the quoted part, or the first prefix
  /// up to a blank that exists as a path or on the search path, with or without ".exe". It gets its arguments as
  /// written. A batch file (.bat) runs in the command interpreter. 0 when nothing could be started.
  virtual ProcessId start(std::string_view commandLine, WindowStyle style) = 0;

  /// A handle with the right to wait for the end of `process`; 0 when there is none.
  virtual ProcessHandle open(ProcessId process) = 0;

  /// Waits without a limit until the process behind `handle` has ended. A handle that is none is a failure and returns
  /// at once.
  virtual bool wait(ProcessHandle handle) = 0;

  virtual bool close(ProcessHandle handle) = 0;
};

}  // namespace tellaxis::platform
