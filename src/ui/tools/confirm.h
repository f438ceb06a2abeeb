// Confirm: a question that only a deliberate yes answers.
#pragma once

#include <wx/msgdlg.h>
#include <wx/window.h>

namespace tellaxis::ui {

/// The Enter key says no. `yes` is the caption of the other button.
bool confirm(wxWindow& parent, const wxString& text, const wxString& title, const wxString& yes, bool warning);

}  // namespace tellaxis::ui
