// Setup: the lists of fiscal printers and drivers, and the configuration taken over from the point-of-sale application.
#pragma once

#include "core/bridge.h"

namespace tellaxis {

/// Fills the lists `MF_Type` and `MF_Protocol` and proposes the driver input file.
void MF_StartUP_Valori(Bridge& bridge);

/// Takes the fiscal printer over from the point-of-sale settings when `Orbis_Setting` is true. The code of a model that
/// is not offered switches the fiscal printer off and leaves its file, port, delay and driver as they were.
void MF_StartUP_Orbis(Bridge& bridge);

}  // namespace tellaxis
