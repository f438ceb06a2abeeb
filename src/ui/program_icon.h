// Program icon: the drawing of packaging/icon in the sizes that windows and trays ask for.
#pragma once

#include <wx/icon.h>
#include <wx/iconbndl.h>

namespace tellaxis::ui {

/// The icon of this width in pixels: 16, 24, 32 or 48.
wxIcon programIcon(int size);

wxIconBundle programIcons();

}  // namespace tellaxis::ui
