// Setup: the lists of displays and ports, and the display configuration taken over from the point-of-sale application.
#pragma once

#include "core/bridge.h"

namespace tellaxis {

/// Fills the lists `DLY_Type` and `DLY_com`.
void Display_StartUP_Valori(Bridge& bridge);

/// Takes the display configuration over from the point-of-sale settings when `Orbis_Setting` is true. An unknown code
/// switches the display off and leaves its port settings as they were.
void Display_StartUP_Orbis(Bridge& bridge);

}  // namespace tellaxis
