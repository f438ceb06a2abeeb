// Fake computer: the fake services as the contracts use them.
#pragma once

#include <string>

#include "fake/computer.h"

namespace tellaxis::test {

struct FakeComputer {
  platform::Host& host() { return computer.host; }
  int failures() const { return static_cast<int>(computer.trace.failures.size()); }

  /// A path in a folder that exists.
  static std::string path(const std::string& name) { return "C:\\desk\\" + name; }

  fake::Computer computer;
};

}  // namespace tellaxis::test
