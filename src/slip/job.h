// Slip job: printing the slip job file.
#pragma once

#include <optional>

#include "platform/printers.h"
#include "slip/printed_forms.h"

namespace tellaxis {

/// Prints `RF_File` on the printer `RF_Stampante`, in the layout of that name, and deletes it. A name without a layout
/// prints nothing and leaves the file. Throws `StepFailed` at the first failing step; the file then stays, and nothing
/// of a document that had not ended is printed. A file that could not be deleted is not begun. `printed` is kept from
/// call to call: the forms that it tells of are not printed again, and a file printed to its end is only deleted.
void LanciaFileRF(Bridge& bridge, PrintedForms& printed);

/// The printer that the next job would be printed on; nothing where none is installed or its name has no layout.
std::optional<platform::InstalledPrinter> slipPrinter(Bridge& bridge);

}  // namespace tellaxis
