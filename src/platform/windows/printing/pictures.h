// Pictures of Windows: bitmap files read and painted by GDI.
#pragma once

#include <windows.h>

#include <optional>
#include <string_view>

#include "platform/printers.h"
#include "platform/printing/bitmap.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Sizes of a bitmap file; nothing when it is missing or damaged, which is reported to the trace.
std::optional<Picture> readPicture(std::string_view file, Trace& trace);

/// The pixels of a bitmap file; nothing when it is missing or damaged, which is reported to the trace.
std::optional<Bitmap> readPixels(std::string_view file, Trace& trace);

/// Paints the file of `picture` in its natural size, at 96 pixels an inch, with its upper left corner at (x, y) in the
/// device's units. False when it cannot be read or painted; the last error says why.
bool paintPicture(HDC context, const Picture& picture, int x, int y);

}  // namespace tellaxis::platform
