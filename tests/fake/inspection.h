// Inspection: the files of the fake computer, and what else a test says.
#pragma once

#include <map>
#include <set>
#include <string>

#include "fake/files.h"
#include "fake/names.h"
#include "fake/processes.h"
#include "platform/inspection.h"

namespace tellaxis::fake {

/// Looking is no call: a check that changes nothing leaves the journal without a write.
class Inspection : public platform::Inspection {
 public:
  Inspection(Files& files, Processes& processes) : files_(files), processes_(processes) {}

  std::optional<std::uint64_t> free = 1'000'000'000;
  std::set<std::string> unreadable;  ///< paths, here and below
  std::set<std::string> unwritable;
  std::set<std::string> notExecutable;
  std::map<std::string, std::chrono::seconds> ages;
  std::map<int, platform::PortLook> ports;
  bool askedToOpen = false;  ///< a port might have been opened

  platform::PathLook look(std::string_view path) override {
    const std::string name = lower(path);
    const bool isFile = files_.has(path);
    const bool isFolder = files_.hasFolder(path.ends_with('\\') ? path.substr(0, path.size() - 1) : path);
    const auto age = ages.find(name);
    return {.isFile = isFile,
            .isFolder = isFolder,
            .mayRead = (isFile || isFolder) && !unreadable.contains(name),
            .mayWrite = (isFile || isFolder) && !unwritable.contains(name),
            .age = age == ages.end() ? std::chrono::seconds(0) : age->second};
  }

  std::optional<std::uint64_t> freeBytes(std::string_view folder) override {
    return look(folder).isFolder ? free : std::nullopt;
  }

  platform::ProgramLook program(std::string_view commandLine) override {
    const auto found = platform::findCommand(commandLine, [this](const std::string& name) {
      return processes_.installed && processes_.installed->contains(name) ? std::optional(name) : std::nullopt;
    });
    if (!found) return {};
    return {.file = found->program, .executable = !notExecutable.contains(lower(found->program))};
  }

  platform::PortLook port(int number, bool mayOpen) override {
    askedToOpen = askedToOpen || mayOpen;
    const auto found = ports.find(number);
    return found == ports.end() ? platform::PortLook{.device = "COM" + std::to_string(number)} : found->second;
  }

 private:
  Files& files_;
  Processes& processes_;
};

}  // namespace tellaxis::fake
