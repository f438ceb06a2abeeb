// Device face: which of a driver's descriptions of a font is taken.
#pragma once

#include <windows.h>

namespace tellaxis::platform {

/// A face as the driver describes it.
struct Face {
  bool found = false;
  bool ofDevice = false;
  LOGFONTW description = {};
};

/// For EnumFontFamiliesEx, with a `Face*` as its last argument. A font of the device comes before others of its name;
/// of its character sets the western one, in which the receipts are written, before others; else the first.
int CALLBACK takeFace(const LOGFONTW* description, const TEXTMETRICW* metrics, DWORD type, LPARAM target);

}  // namespace tellaxis::platform
