// Processes: notes what would be started.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "fake/journal.h"
#include "platform/processes.h"
#include "platform/processes/command_line.h"
#include "platform/trace.h"

namespace tellaxis::fake {

class Processes : public platform::Processes {
 public:
  Processes(Journal& journal, platform::Trace& trace) : journal_(journal), trace_(trace) {}

  /// The programs that there are; without it every command line starts one.
  std::optional<std::set<std::string>> installed;

  /// What a started program does; called with its command line.
  std::function<void(std::string_view)> onStart;

  /// The same for an installed one, with its path and its arguments as written.
  std::function<void(const std::string& program, const std::string& arguments)> onRun;

  platform::ProcessHandle nextHandle = 100;

  platform::ProcessId start(std::string_view commandLine, platform::WindowStyle style) override {
    const std::string how = std::to_string(static_cast<int>(style));
    if (!journal_.record("start " + std::string(commandLine) + " style " + how) || !run(commandLine)) {
      failed("start", commandLine);
      return 0;
    }
    return onlyProcess;
  }

  platform::ProcessHandle open(platform::ProcessId process) override {
    const bool opened = journal_.record("open " + std::to_string(process)) && process == onlyProcess;
    if (opened && nextHandle != 0) open_.insert(nextHandle);
    if (!opened) failed("open", std::to_string(process));
    return opened ? nextHandle : 0;
  }

  bool wait(platform::ProcessHandle handle) override {
    const bool ended = journal_.record("wait " + std::to_string(handle)) && open_.contains(handle);
    return ended || failed("wait", std::to_string(handle));
  }

  bool close(platform::ProcessHandle handle) override {
    const bool closed = journal_.record("close " + std::to_string(handle)) && open_.erase(handle) == 1;
    return closed || failed("close", std::to_string(handle));
  }

 private:
  static constexpr platform::ProcessId onlyProcess = 42;

  bool run(std::string_view commandLine) {
    if (onStart) onStart(commandLine);
    if (!installed) return true;
    const auto command = platform::findCommand(commandLine, [this](const std::string& name) {
      return installed->contains(name) ? std::optional(name) : std::nullopt;
    });
    if (command && onRun) onRun(command->program, command->arguments);
    return command.has_value();
  }

  bool failed(std::string_view operation, std::string_view subject) {
    trace_.failed(operation, subject, "finto");
    return false;
  }

  Journal& journal_;
  platform::Trace& trace_;
  std::set<platform::ProcessHandle> open_;
};

}  // namespace tellaxis::fake
