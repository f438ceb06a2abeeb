// Confirm: the toolkit's dialog with its buttons named after what they do.
#include "ui/tools/confirm.h"

#include <wx/generic/msgdlgg.h>

namespace tellaxis::ui {

bool confirm(wxWindow& parent, const wxString& text, const wxString& title, const wxString& yes, bool warning) {
  const long icon = warning ? wxICON_WARNING : wxICON_QUESTION;
  wxGenericMessageDialog box(&parent, text, title, wxYES_NO | wxNO_DEFAULT | wxCENTRE | icon);
  box.SetYesNoLabels(yes, "&Annulla");
  return box.ShowModal() == wxID_YES;
}

}  // namespace tellaxis::ui
