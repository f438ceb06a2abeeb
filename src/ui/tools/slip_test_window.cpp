// Slip test window: two boxes and the button that prints.
#include "ui/tools/slip_test_window.h"

#include <wx/button.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "core/application.h"
#include "core/step_failed.h"
#include "platform/dialogs.h"
#include "ui/fit.h"
#include "ui/native.h"
#include "ui/program_icon.h"
#include "ui/text.h"

namespace tellaxis::ui {

SlipTestWindow::SlipTestWindow(Bridge& bridge)
    : wxFrame(nullptr, wxID_ANY, "TEST Epson TM-U295", wxDefaultPosition, wxDefaultSize,
              wxDEFAULT_FRAME_STYLE & ~(wxRESIZE_BORDER | wxMAXIMIZE_BOX)),
      bridge_(bridge) {
  SetIcons(programIcons());
  const int gap = FromDIP(12);
  auto* panel = new wxPanel(this);
  auto* grid = new wxFlexGridSizer(2, gap / 2, gap);
  grid->AddGrowableCol(1);
  testRow_ = addBox(panel, grid, "Righe", "Quante righe stampare sul modulo di prova");
  testChar_ = addBox(panel, grid, "Colonne", "Quanti caratteri stampare nella prima riga, fino a 70");
  auto* print = new wxButton(panel, wxID_ANY, "Stampa &TEST");
  print->SetToolTip("Stampa il modulo di prova sulla Epson TM-U295");
  print->SetDefault();
  print->Bind(wxEVT_BUTTON, [this](const wxCommandEvent&) { cmdTest(); });

  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(grid, wxSizerFlags().Expand().Border(wxALL, gap));
  all->Add(print, wxSizerFlags().Right().Border(wxALL & ~wxTOP, gap));
  panel->SetSizer(all);
  fitToPanel(*this, *panel);
  testRow_->SetFocus();
}

wxTextCtrl* SlipTestWindow::addBox(wxWindow* parent, wxSizer* grid, const char* label, const char* help) {
  grid->Add(new wxStaticText(parent, wxID_ANY, fromUtf8(label)), wxSizerFlags().CenterVertical());
  auto* box = new wxTextCtrl(parent, wxID_ANY, "", wxDefaultPosition, wxSize(FromDIP(180), -1));
  box->SetToolTip(fromUtf8(help));
  setAccessible(*box, fromUtf8(label), fromUtf8(help));
  grid->Add(box, wxSizerFlags().Expand());
  return box;
}

void SlipTestWindow::cmdTest() {
  form_.testRow.Text = fromWx(testRow_->GetValue());
  form_.testChar.Text = fromWx(testChar_->GetValue());
  try {
    cmdTest_Click(bridge_, form_);
  } catch (const StepFailed& failure) {
    bridge_.host.dialogs.show(std::string("La stampa di prova non \xE8 riuscita: ") + failure.what(), applicationTitle,
                              platform::Buttons::ok);
  }
}

}  // namespace tellaxis::ui
