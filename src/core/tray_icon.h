// Tray icon: adding and removing it, hiding the main form behind it, and coming back with a click.
#pragma once

#include <cstdint>

#include "core/bridge.h"
#include "core/form/window.h"

namespace tellaxis {

/// Whether the icon is in the tray: -1 after an add, 0 after a remove, whatever the desktop made of it.
struct TrayIcon {
  std::int16_t shown = 0;
};

/// Adds the form's icon, with its caption as tip. A second add fails harmlessly: the desktop has that icon already.
void IconaAggiungi(Bridge& bridge, TrayIcon& icon, const Window& form);

void IconaRimuovi(Bridge& bridge, TrayIcon& icon, const Window& form);

/// Hides the form and adds the icon. On a desktop without a tray the form is made small instead, or nobody could bring
/// it back.
void cmdNascondi_Click(Bridge& bridge, TrayIcon& icon, Window& form);

/// Any mouse move of the form. The desktop sends what happens to the icon as moves whose horizontal coordinate is the
/// event's code; a left button let go over the icon shows the form. `twipsPerPixelX` counts where `scale` is not
/// pixels.
void Form_MouseMove(Window& form, double x, ScaleMode scale, double twipsPerPixelX);

}  // namespace tellaxis
