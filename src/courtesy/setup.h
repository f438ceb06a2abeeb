// Setup: the list of courtesy printers and the take-over of their settings.
#pragma once

#include "core/bridge.h"

namespace tellaxis {

/// Adds the printer types to the list of `Cort_Printer`.
void Cort_StartUP_Valori(Bridge& bridge);

/// Takes the courtesy printer over from the point-of-sale application, whenever that names one: its model, its port and
/// its line settings, by its model code. What is taken over as empty leaves the key as it was.
void Cort_StartUP_Orbis(Bridge& bridge);

/// The user chose a printer: where it is an installed printer's name, its port is shown in `Cort_COM`.
void Cort_Printer_Change(Bridge& bridge);

}  // namespace tellaxis
