// Real computer: the services of the system that the tests run on, with a main folder of their own.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "platform/system.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::test {

struct RealComputer {
  explicit RealComputer(const std::string& devicesFile = {}, std::optional<std::string> localeName = {}) {
    if (!devicesFile.empty()) folder.write("devices.toml", devicesFile);
    std::string mainFolder = folder / "";
    mainFolder.pop_back();
    auto opened =
        platform::openSystem({.mainFolder = mainFolder, .localeName = std::move(localeName), .alsoTold = &trace});
    if (auto* made = std::get_if<std::unique_ptr<platform::System>>(&opened)) system = std::move(*made);
    EXPECT_TRUE(system) << "the services could not be made";
  }

  platform::Host& host() const { return system->host(); }
  int failures() const { return static_cast<int>(trace.lines.size()); }

  TemporaryFolder folder;
  TraceLog trace;
  std::unique_ptr<platform::System> system;
};

}  // namespace tellaxis::test
