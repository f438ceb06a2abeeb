// Display job: sends the display job file to the customer display.
#pragma once

#include "core/bridge.h"

namespace tellaxis {

/// Sends the job file's lines in the byte sequences of the configured family, deletes the file and pauses for the
/// configured delay. With an unknown family only the pause is made and the file stays.
void LanciaFileDisplay(Bridge& bridge);

}  // namespace tellaxis
