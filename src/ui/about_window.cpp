// About window: icon, name, version and one sentence.
#include "ui/about_window.h"

#include <wx/button.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include "ui/fit.h"
#include "ui/program_icon.h"
#include "ui/text.h"

namespace tellaxis::ui {

AboutWindow::AboutWindow()
    : wxFrame(nullptr, wxID_ANY, "About", wxDefaultPosition, wxDefaultSize,
              wxDEFAULT_FRAME_STYLE & ~(wxRESIZE_BORDER | wxMAXIMIZE_BOX)) {
  SetIcons(programIcons());
  auto* panel = new wxPanel(this);
  auto* name = new wxStaticText(panel, wxID_ANY, "Tellaxis " TELLAXIS_VERSION);
  name->SetFont(name->GetFont().Bold().Scaled(1.4F));
  auto* sentence = new wxStaticText(panel, wxID_ANY,
                                    fromUtf8("Ponte fra il punto cassa Orbis51\ne le periferiche del banco:\n"
                                             "misuratore fiscale, display,\nricevute e preconti."));
  auto* close = new wxButton(panel, wxID_CLOSE, "&Chiudi");
  close->SetToolTip("Chiude questa finestra");
  close->Bind(wxEVT_BUTTON, [this](const wxCommandEvent&) { Close(); });

  const int gap = FromDIP(12);
  auto* words = new wxBoxSizer(wxVERTICAL);
  words->Add(name);
  words->Add(sentence, wxSizerFlags().Border(wxTOP, gap / 2));
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(new wxStaticBitmap(panel, wxID_ANY, wxBitmap(programIcon(48))));
  row->Add(words, wxSizerFlags(1).Border(wxLEFT, gap));
  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(row, wxSizerFlags().Border(wxALL, gap));
  all->Add(close, wxSizerFlags().Right().Border(wxALL & ~wxTOP, gap));
  panel->SetSizer(all);
  fitToPanel(*this, *panel);
  close->SetFocus();
}

}  // namespace tellaxis::ui
