// Printers window: every installed printer with its port.
#pragma once

#include <wx/frame.h>

#include "core/bridge.h"

namespace tellaxis::ui {

class PrintersWindow : public wxFrame {
 public:
  explicit PrintersWindow(Bridge& bridge);
};

}  // namespace tellaxis::ui
