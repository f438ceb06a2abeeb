// Exit: the exit question and the end of the main form.
#pragma once

#include "core/bridge.h"
#include "core/form/window.h"
#include "core/tray_icon.h"

namespace tellaxis {

/// Closes the customer display's line where it is open, then asks whether to end the program. The line stays closed
/// when the answer is No; the display opens it again when it next needs it.
void Esci_Click(Bridge& bridge, Window& form);

/// The main form goes, by whatever means: its icon goes too.
void Form_Unload(Bridge& bridge, TrayIcon& icon, const Window& form);

}  // namespace tellaxis
