// Setup: the list of printers to choose the slip printer from.
#pragma once

#include "core/bridge.h"

namespace tellaxis {

/// Adds the installed printers to the list of `RF_Printer`.
void RF_StartUP_Valori(Bridge& bridge);

/// The user changed the text of `RF_Printer`. An installed printer's name shows its port in `RF_COM`; any other text is
/// saved at once, with the port that `RF_COM` holds.
void RF_Printer_Change(Bridge& bridge);

}  // namespace tellaxis
