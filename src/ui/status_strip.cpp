// Status strip: one cell for each device, written anew when its text changes.
#include "ui/status_strip.h"

#include <wx/settings.h>
#include <wx/sizer.h>

#include "ui/text.h"

namespace tellaxis::ui {

namespace {

struct DeviceRow {
  Device device;
  const char* name;
  bool Settings::*active;
  const char* on;
  const char* off;
};

constexpr DeviceRow deviceRows[] = {
    {Device::fiscalPrinter, "Misuratore fiscale", &Settings::MF_Active, "attivo", "non attivo"},
    {Device::courtesyPrinter, "Preconto", &Settings::Cort_Active, "attivo", "non attivo"},
    {Device::slipPrinter, "Ricevuta fiscale", &Settings::RF_Active, "attiva", "non attiva"},
    {Device::display, "Display", &Settings::Display_Active, "attivo", "non attivo"},
};
static_assert(std::size(deviceRows) == deviceCount);

constexpr int measuringError = 16;

const wxColour good(0x1B, 0x7F, 0x3B);
const wxColour bad(0xB0, 0x1E, 0x1E);

wxString timeOf(const LastJob& job) {
  return wxString::Format("%02d:%02d:%02d", job.ended.hour, job.ended.minute, job.second);
}

wxString lastJobText(const std::optional<LastJob>& job) {
  if (!job) return "nessun lavoro";
  return timeOf(*job) + " " + toWx(job->name) + (job->failure.empty() ? " eseguito" : " con errori");
}

wxString lastJobHelp(const std::optional<LastJob>& job) {
  if (!job) return fromUtf8("Nessun lavoro dall'avvio del programma");
  const wxString day = wxString::Format("%02d/%02d/%04d ", job->ended.day, job->ended.month, job->ended.year);
  const wxString text = day + timeOf(*job) + " " + toWx(job->name);
  return text + (job->failure.empty() ? wxString(": eseguito") : ": con errori, il primo\n" + toWx(job->failure));
}

void setText(wxStaticText* label, const wxString& text) {
  if (label->GetLabelText() != text) label->SetLabelText(text);
}

void setHelp(wxWindow* window, const wxString& text) {
  if (window->GetToolTipText() != text) window->SetToolTip(text);
}

void setColour(wxWindow* window, const wxColour& colour) {
  if (window->GetForegroundColour() == colour) return;
  window->SetForegroundColour(colour);
  window->Refresh();
}

}  // namespace

StatusStrip::StatusStrip(wxWindow* parent, const Settings& settings, const Activity& activity)
    : wxPanel(parent), settings_(settings), activity_(activity) {
  auto* grid = new wxFlexGridSizer(static_cast<int>(deviceCount), 0, 0);
  for (std::size_t i = 0; i < deviceCount; ++i) grid->AddGrowableCol(i);
  for (std::size_t i = 0; i < deviceCount; ++i) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    auto* heading = new wxBoxSizer(wxHORIZONTAL);
    Cell& cell = cells_[i];
    cell.mark = new wxStaticText(this, wxID_ANY, fromUtf8("●"));
    auto* name = new wxStaticText(this, wxID_ANY, deviceRows[i].name);
    name->SetFont(name->GetFont().Bold());
    cell.state = new wxStaticText(this, wxID_ANY, deviceRows[i].off);
    cell.lastJob = new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                                    wxST_ELLIPSIZE_MIDDLE | wxST_NO_AUTORESIZE);
    const int gap = FromDIP(6);
    heading->Add(cell.mark, wxSizerFlags().CenterVertical());
    heading->Add(name, wxSizerFlags().CenterVertical().Border(wxLEFT, gap));
    heading->Add(cell.state, wxSizerFlags().CenterVertical().Border(wxLEFT, gap));
    column->Add(heading);
    column->Add(cell.lastJob, wxSizerFlags().Expand());
    grid->Add(column, wxSizerFlags().Expand().Border(wxALL, gap));
  }
  SetSizer(grid);
  refresh();
}

void StatusStrip::fitWidth(int width) {
  auto* grid = static_cast<wxFlexGridSizer*>(GetSizer());
  // Labels may come out a little wider than they are measured before they are shown.
  if (grid->GetMinSize().x + width / measuringError <= width) return;
  for (std::size_t i = deviceCount / 2; i < deviceCount; ++i) grid->RemoveGrowableCol(i);
  grid->SetCols(static_cast<int>(deviceCount) / 2);
}

void StatusStrip::refresh() {
  const wxColour plain = wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT);
  const wxColour grey = wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT);
  for (std::size_t i = 0; i < deviceCount; ++i) {
    const DeviceRow& row = deviceRows[i];
    const Cell& cell = cells_[i];
    const bool active = settings_.*row.active;
    const auto& job = activity_.lastJob(row.device);
    const bool failed = job && !job->failure.empty();
    setText(cell.state, active ? row.on : row.off);
    setText(cell.lastJob, lastJobText(job));
    setHelp(cell.lastJob, lastJobHelp(job));
    setColour(cell.mark, active ? good : grey);
    setColour(cell.state, active ? plain : grey);
    setColour(cell.lastJob, failed ? bad : grey);
  }
}

}  // namespace tellaxis::ui
