// Trace log: a trace that keeps every reported failure as one line.
#pragma once

#include <string>
#include <vector>

#include "platform/trace.h"

namespace tellaxis::test {

class TraceLog final : public platform::Trace {
 public:
  void failed(std::string_view operation, std::string_view subject, std::string_view reason) override {
    lines.push_back(std::string(operation) + " | " + std::string(subject) + " | " + std::string(reason));
  }

  std::vector<std::string> lines;
};

}  // namespace tellaxis::test
