// Diagnosis window: the table of findings, the chosen one at length, and the buttons.
#include "ui/tools/diagnosis_window.h"

#include <wx/display.h>
#include <wx/panel.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "ui/fit.h"
#include "ui/native.h"
#include "ui/program_icon.h"
#include "ui/text.h"

namespace tellaxis::ui {

namespace {

constexpr TableColumn columns[] = {{"Periferica", 24}, {"Stato", 14}, {"Che cosa", 60}, {"Rimedio", 60}};

constexpr int tableColumns = 118;  // characters that are seen without scrolling
constexpr int tableRows = 16;
constexpr int rowGap = 6;
/// What the window has beside the table.
constexpr int frame = 48;
constexpr int detailRows = 6;

struct Trial {
  Device device;
  const char* label;
  const char* help;
};

constexpr Trial trials[] = {
    {Device::display, "Prova &display", "Manda al display un lavoro di prova, come se venisse dal punto cassa"},
    {Device::courtesyPrinter, "Prova &preconto", "Stampa un preconto di prova, come se venisse dal punto cassa"},
    {Device::slipPrinter, "Prova &ricevuta", "Stampa una ricevuta di prova, come se venisse dal punto cassa"},
};

std::optional<wxColour> colourOf(Level level) {
  switch (level) {
    case Level::error: return wxColour(0xB0, 0x1E, 0x1E);
    case Level::warning: return wxColour(0x8A, 0x55, 0x00);
    case Level::off: return wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT);
    case Level::ok: break;
  }
  return std::nullopt;
}

}  // namespace

DiagnosisWindow::DiagnosisWindow(std::shared_ptr<BackgroundWork> work)
    : wxFrame(nullptr, wxID_ANY, "Diagnosi"), work_(std::move(work)) {
  SetIcons(programIcons());
  const int gap = FromDIP(8);
  auto* panel = new wxPanel(this);
  makeTable(panel);
  details_ = new wxTextCtrl(panel, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxTE_MULTILINE | wxTE_READONLY);
  setAccessible(*details_, "Dettagli", fromUtf8("Il problema scelto e il suo rimedio, o com'è finita la prova"));
  details_->SetMargins(FromDIP(4), FromDIP(4));
  details_->SetMinSize(wxSize(-1, detailRows * details_->GetCharHeight()));
  line_ = new WorkLine(panel, [this] { busyChanged(); });

  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(table_, wxSizerFlags(1).Expand().Border(wxALL, gap));
  all->Add(details_, wxSizerFlags().Expand().Border(wxALL & ~wxTOP, gap));
  all->Add(line_, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, gap));
  all->Add(makeTrials(panel), wxSizerFlags().Expand().Border(wxALL, gap));
  all->Add(makeButtons(panel), wxSizerFlags().Expand().Border(wxALL & ~wxTOP, gap));
  panel->SetSizer(all);
  fitToPanel(*this, *panel);
  table_->SetFocus();
  look(false);
}

void DiagnosisWindow::makeTable(wxWindow* parent) {
  table_ = new Table(
      parent, columns,
      [this](std::size_t row, unsigned column) {
        return toWx(diagnosis_.cell(row, static_cast<Diagnosis::Column>(column)));
      },
      [this](std::size_t row) { return colourOf(diagnosis_.at(row).level); });
  setAccessible(*table_, "Controlli", "Che cosa va e che cosa non va, periferica per periferica");
  wxSize size(tableColumns * table_->GetTextExtent("0").x, tableRows * (table_->GetCharHeight() + FromDIP(rowGap)));
  const wxSize screen = wxDisplay(this).GetClientArea().GetSize();
  size.DecTo(wxSize(screen.x - FromDIP(frame), screen.y / 2));
  table_->SetMinSize(size);
  table_->Bind(wxEVT_DATAVIEW_SELECTION_CHANGED, [this](const wxDataViewEvent&) { showChosen(); });
}

wxSizer* DiagnosisWindow::makeTrials(wxWindow* parent) {
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  for (const Trial& trial : trials)
    actions_.push_back(addButton(parent, row, trial.label, trial.help, [this, &trial] { tryDevice(trial.device); }));
  return row;
}

wxSizer* DiagnosisWindow::makeButtons(wxWindow* parent) {
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  actions_.push_back(
      addButton(parent, row, "Controlla di &nuovo", "Guarda di nuovo tutto, senza la rete", [this] { look(false); }));
  actions_.push_back(addButton(parent, row, "Controlla anche la re&te",
                               "Guarda di nuovo tutto e si collega al server FTP, senza trasferire",
                               [this] { look(true); }));
  row->AddStretchSpacer();
  addButton(parent, row, "&Chiudi", "Chiude questa finestra", [this] { Close(); });
  return row;
}

wxButton* DiagnosisWindow::addButton(wxWindow* parent, wxSizer* row, const char* label, const char* help,
                                     std::function<void()> press) {
  auto* button = new wxButton(parent, wxID_ANY, fromUtf8(label));
  button->SetToolTip(fromUtf8(help));
  button->Bind(wxEVT_BUTTON, [press = std::move(press)](const wxCommandEvent&) { press(); });
  row->Add(button, wxSizerFlags().Border(wxRIGHT, FromDIP(8)));
  return button;
}

void DiagnosisWindow::look(bool network) {
  if (line_->isBusy()) return;
  line_->start<std::vector<Finding>>(
      fromUtf8(network ? "Controllo in corso, anche della rete…" : "Controllo in corso…"),
      [work = work_, network] { return work->check(network); },
      [this](std::vector<Finding>& findings) { show(findings); });
}

void DiagnosisWindow::show(std::vector<Finding>& findings) {
  diagnosis_.show(std::move(findings));
  details_->Clear();
  table_->reload(diagnosis_.size());
  if (const auto row = diagnosis_.worst()) table_->choose(*row);
  showChosen();
  line_->say(toWx(diagnosis_.summary()));
}

void DiagnosisWindow::tryDevice(Device device) {
  if (line_->isBusy()) return;
  line_->start<std::string>(
      "Prova in corso" + fromUtf8("…"), [work = work_, device] { return work->tryDevice(device); },
      [this](std::string& result) {
        details_->ChangeValue(wxString::FromUTF8(result.c_str()));
        line_->say("Prova finita.");
      });
}

void DiagnosisWindow::showChosen() {
  const auto row = table_->chosen();
  if (row && *row < diagnosis_.size()) details_->ChangeValue(toWx(diagnosis_.details(*row)));
}

void DiagnosisWindow::busyChanged() {
  for (wxButton* button : actions_) button->Enable(!line_->isBusy());
}

}  // namespace tellaxis::ui
