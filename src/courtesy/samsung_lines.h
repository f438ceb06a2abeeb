// Samsung lines: the statements that print one line of a receipt.
#pragma once

#include "courtesy/samsung_models.h"

namespace tellaxis {

/// What comes before the first line.
void openReceipt(platform::PrinterObject& printer, const SamsungModel& model);

/// A text line in font, size, colour and boldness; with a command that is not 0 the paper cut and the document's end.
void printLineOn500(platform::PrinterObject& printer, const SamsungModel& model, Markup& markup);

/// A text line, or a bar code where the style asks for one; with command 1 the document's end, after a paper cut on a
/// 350 device.
void printLineOnOthers(platform::PrinterObject& printer, const SamsungModel& model, Markup& markup);

}  // namespace tellaxis
