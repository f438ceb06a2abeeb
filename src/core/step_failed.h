// Step failed: how the few procedures that don't skip a failing step leave at once.
#pragma once

#include <stdexcept>
#include <string>

namespace tellaxis {

/// Thrown by a procedure at its first failing step and caught once, by whoever called the procedure.
class StepFailed : public std::runtime_error {
 public:
  explicit StepFailed(const std::string& step) : std::runtime_error(step) {}
};

}  // namespace tellaxis
