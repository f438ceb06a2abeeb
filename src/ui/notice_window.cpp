// Notice window: text, count and time over one button.
#include "ui/notice_window.h"

#include <wx/button.h>
#include <wx/datetime.h>
#include <wx/settings.h>
#include <wx/sizer.h>

#include "ui/program_icon.h"
#include "ui/text.h"

namespace tellaxis::ui {

NoticeWindow::NoticeWindow(const wxString& text, const wxString& title)
    : wxDialog(nullptr, wxID_ANY, title, wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE | wxSTAY_ON_TOP),
      text_(text) {
  SetIcons(programIcons());
  const int gap = FromDIP(16);
  auto* message = new wxStaticText(this, wxID_ANY, "");
  message->SetLabelText(text);
  times_ = new wxStaticText(this, wxID_ANY, "");
  times_->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT));
  auto* close = new wxButton(this, wxID_OK, "&OK");
  close->SetDefault();
  close->Bind(wxEVT_BUTTON, [this](const wxCommandEvent&) { Close(); });
  Bind(wxEVT_CLOSE_WINDOW, [this](const wxCloseEvent&) { Destroy(); });
  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(message, wxSizerFlags().Border(wxALL, gap));
  all->Add(times_, wxSizerFlags().Border(wxLEFT | wxRIGHT, gap));
  all->Add(close, wxSizerFlags().Right().Border(wxALL, gap));
  SetSizer(all);
  showTimes();
  CentreOnScreen();
  ShowWithoutActivating();
}

void NoticeWindow::raisedAgain() {
  ++count_;
  showTimes();
}

void NoticeWindow::showTimes() {
  const wxString time = wxDateTime::Now().Format("%H:%M:%S");
  times_->SetLabelText(count_ == 1 ? "Alle " + time : wxString::Format("%d volte, l'ultima alle ", count_) + time);
  GetSizer()->SetSizeHints(this);
}

}  // namespace tellaxis::ui
