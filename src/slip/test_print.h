// Test print: the form that finds out how many rows and columns fit on a slip.
#pragma once

#include "core/bridge.h"

namespace tellaxis {

struct fStr_U295 {
  TextBox testRow;
  TextBox testChar;
};

/// Prints a ruler of `testChar` characters, then numbered rows up to `testRow`, and says what to look at. Says what is
/// missing where the slip printer is not set up or the boxes hold no numbers. Throws `StepFailed` at the first failing
/// step: a number beyond 16 bits, a negative column count, the printer.
void cmdTest_Click(Bridge& bridge, const fStr_U295& form);

}  // namespace tellaxis
