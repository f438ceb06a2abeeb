// Slip job: printing the slip job file.
#pragma once

#include "core/bridge.h"

namespace tellaxis {

/// Prints `RF_File` on the printer `RF_Stampante`, in the layout of that name, and deletes it. A name without a layout
/// prints nothing and leaves the file. Throws `StepFailed` at the first failing step; the file then stays.
void LanciaFileRF(Bridge& bridge);

}  // namespace tellaxis
