// Processes of Windows: programs started with a window style and waited for by handle.
#pragma once

#include "platform/processes.h"
#include "platform/trace.h"

namespace tellaxis::platform {

class WindowsProcesses : public Processes {
 public:
  explicit WindowsProcesses(Trace& trace) : trace_(trace) {}

  ProcessId start(std::string_view commandLine, WindowStyle style) override;
  ProcessHandle open(ProcessId process) override;
  bool wait(ProcessHandle handle) override;
  bool close(ProcessHandle handle) override;

 private:
  Trace& trace_;
};

}  // namespace tellaxis::platform
