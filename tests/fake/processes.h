// Processes: notes what would be started.
#pragma once

#include <functional>
#include <string>

#include "fake/journal.h"
#include "platform/processes.h"

namespace tellaxis::fake {

class Processes : public platform::Processes {
 public:
  explicit Processes(Journal& journal) : journal_(journal) {}

  /// What a started program does; called with its command line.
  std::function<void(std::string_view)> onStart;
  platform::ProcessHandle nextHandle = 100;

  platform::ProcessId start(std::string_view commandLine, platform::WindowStyle style) override {
    const std::string how = std::to_string(static_cast<int>(style));
    if (!journal_.record("start " + std::string(commandLine) + " style " + how)) return 0;
    if (onStart) onStart(commandLine);
    return 42;
  }
  platform::ProcessHandle open(platform::ProcessId process) override {
    return journal_.record("open " + std::to_string(process)) ? nextHandle : 0;
  }
  bool wait(platform::ProcessHandle handle) override {
    return journal_.record("wait " + std::to_string(handle)) && handle != 0;
  }
  bool close(platform::ProcessHandle handle) override {
    return journal_.record("close " + std::to_string(handle)) && handle != 0;
  }

 private:
  Journal& journal_;
};

}  // namespace tellaxis::fake
