// Printers window: the list, built when the window opens.
#include "ui/tools/printers_window.h"

#include <wx/button.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/textctrl.h>

#include "slip/printers_list.h"
#include "ui/fit.h"
#include "ui/native.h"
#include "ui/program_icon.h"
#include "ui/text.h"

namespace tellaxis::ui {

namespace {

constexpr int columns = 48;
constexpr int rows = 15;

}  // namespace

PrintersWindow::PrintersWindow(Bridge& bridge) : wxFrame(nullptr, wxID_ANY, "Elenco Porte Stampanti") {
  SetIcons(programIcons());
  fStampa_Porte form;
  Form_Load(bridge.host, form);

  auto* panel = new wxPanel(this);
  auto* list = new wxTextCtrl(panel, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                              wxTE_MULTILINE | wxTE_READONLY | wxTE_DONTWRAP);
  list->SetFont(wxFontInfo(GetFont().GetFractionalPointSize()).Family(wxFONTFAMILY_TELETYPE).FaceName("Courier New"));
  wxString lines = toWx(form.txListaStampanti.Text);
  lines.Replace("\r\n", "\n");
  list->ChangeValue(lines);
  list->SetMargins(FromDIP(6), FromDIP(6));
  const wxString help = "Nomi e porte come vanno scritti nelle impostazioni";
  list->SetToolTip(help);
  setAccessible(*list, "Elenco Porte Stampanti", help);
  list->SetMinSize(
      list->GetSizeFromTextSize(list->GetTextExtent(wxString('0', columns)).x, rows * list->GetCharHeight()));

  auto* close = new wxButton(panel, wxID_CLOSE, "&Chiudi");
  close->SetToolTip("Chiude questa finestra");
  close->Bind(wxEVT_BUTTON, [this](const wxCommandEvent&) { Close(); });

  const int gap = FromDIP(12);
  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(list, wxSizerFlags(1).Expand().Border(wxALL, gap));
  all->Add(close, wxSizerFlags().Right().Border(wxALL & ~wxTOP, gap));
  panel->SetSizer(all);
  fitToPanel(*this, *panel);
  close->SetFocus();
}

}  // namespace tellaxis::ui
