// Processes: programs as children in sessions of their own.
#pragma once

#include <map>

#include "platform/linux/files/paths.h"
#include "platform/linux/kernel/descriptor.h"
#include "platform/linux/processes/reaper.h"
#include "platform/processes.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// A started program inherits the working folder and the environment, nothing else: its standard streams lead nowhere,
/// Ctrl-C does not reach it, and it outlives this program. Window styles mean nothing here.
class LinuxProcesses : public Processes {
 public:
  LinuxProcesses(const Paths& paths, Trace& trace) : paths_(paths), trace_(trace) {}

  ProcessId start(std::string_view commandLine, WindowStyle style) override;
  ProcessHandle open(ProcessId process) override;
  bool wait(ProcessHandle handle) override;
  bool close(ProcessHandle handle) override;

 private:
  bool failed(std::string_view operation, std::string_view subject, std::string_view reason);

  const Paths& paths_;
  Trace& trace_;
  Reaper reaper_;
  std::map<ProcessHandle, Descriptor> handles_;
  ProcessHandle lastHandle_ = 0;
};

}  // namespace tellaxis::platform
