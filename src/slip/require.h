// Require: leaving a procedure at the first step that fails.
#pragma once

#include <string>

#include "core/step_failed.h"

namespace tellaxis {

/// Throws `StepFailed` unless the step was done.
inline void require(bool done, const char* step) {
  if (!done) throw StepFailed(step);
}

}  // namespace tellaxis
