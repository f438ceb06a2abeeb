// Slip test window: rows and columns of the slip printer's test print.
#pragma once

#include <wx/frame.h>
#include <wx/textctrl.h>

#include "core/bridge.h"
#include "slip/test_print.h"

namespace tellaxis::ui {

class SlipTestWindow : public wxFrame {
 public:
  explicit SlipTestWindow(Bridge& bridge);

 private:
  wxTextCtrl* addBox(wxWindow* parent, wxSizer* grid, const char* label, const char* help);
  void cmdTest();

  Bridge& bridge_;
  fStr_U295 form_;
  wxTextCtrl* testRow_ = nullptr;
  wxTextCtrl* testChar_ = nullptr;
};

}  // namespace tellaxis::ui
