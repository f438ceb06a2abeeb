// Status strip: one cell for each device, written anew when its text changes, and the role of this computer.
#include "ui/status_strip.h"

#include <wx/settings.h>

#include "ui/model/device_status.h"
#include "ui/text.h"

namespace tellaxis::ui {

namespace {

constexpr Device shown[] = {Device::fiscalPrinter, Device::courtesyPrinter, Device::slipPrinter, Device::display};
static_assert(std::size(shown) == deviceCount);

constexpr int measuringError = 16;

const wxColour good(0x1B, 0x7F, 0x3B);
const wxColour bad(0xB0, 0x1E, 0x1E);

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

StatusStrip::StatusStrip(wxWindow* parent, const Bridge& bridge, const Activity& activity)
    : wxPanel(parent),
      bridge_(bridge),
      activity_(activity),
      grid_(new wxFlexGridSizer(static_cast<int>(deviceCount), 0, 0)) {
  const int gap = FromDIP(6);
  for (std::size_t i = 0; i < deviceCount; ++i) grid_->AddGrowableCol(i);
  for (std::size_t i = 0; i < deviceCount; ++i) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    auto* heading = new wxBoxSizer(wxHORIZONTAL);
    Cell& cell = cells_[i];
    cell.mark = new wxStaticText(this, wxID_ANY, fromUtf8("●"));
    auto* name = new wxStaticText(this, wxID_ANY, toWx(titleOf(shown[i])));
    name->SetFont(name->GetFont().Bold());
    cell.state = new wxStaticText(this, wxID_ANY, "non attivo");
    cell.line = new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                                 wxST_ELLIPSIZE_MIDDLE | wxST_NO_AUTORESIZE);
    heading->Add(cell.mark, wxSizerFlags().CenterVertical());
    heading->Add(name, wxSizerFlags().CenterVertical().Border(wxLEFT, gap));
    heading->Add(cell.state, wxSizerFlags().CenterVertical().Border(wxLEFT, gap));
    column->Add(heading);
    column->Add(cell.line, wxSizerFlags().Expand());
    grid_->Add(column, wxSizerFlags().Expand().Border(wxALL, gap));
  }
  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(grid_, wxSizerFlags().Expand());
  if (!bridge.options.role.empty()) {
    const wxString role = "Postazione: " + wxString::FromUTF8(bridge.options.role.c_str());
    all->Add(new wxStaticText(this, wxID_ANY, role), wxSizerFlags().Border(wxALL & ~wxTOP, gap));
  }
  warning_ = new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                              wxST_ELLIPSIZE_MIDDLE | wxST_NO_AUTORESIZE);
  warning_->SetForegroundColour(bad);
  warning_->Hide();
  all->Add(warning_, wxSizerFlags().Expand().Border(wxALL & ~wxTOP, gap));
  SetSizer(all);
  refresh();
}

void StatusStrip::warn(const std::string& text) {
  const wxString label = toWx(text);
  if (warning_->GetLabelText() == label && warning_->IsShown() == !label.empty()) return;
  setText(warning_, label);
  setHelp(warning_, label);
  warning_->Show(!label.empty());
  GetParent()->Layout();
}

void StatusStrip::fitWidth(int width) {
  // Labels may come out a little wider than they are measured before they are shown.
  if (grid_->GetMinSize().x + width / measuringError <= width) return;
  for (std::size_t i = deviceCount / 2; i < deviceCount; ++i) grid_->RemoveGrowableCol(i);
  grid_->SetCols(static_cast<int>(deviceCount) / 2);
}

void StatusStrip::refresh() {
  const wxColour plain = wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT);
  const wxColour grey = wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT);
  for (std::size_t i = 0; i < deviceCount; ++i) {
    const DeviceStatus status = statusOf(bridge_, activity_, shown[i]);
    const Cell& cell = cells_[i];
    setText(cell.state, toWx(status.state));
    setText(cell.line, toWx(status.line));
    setHelp(cell.line, toWx(status.help));
    setColour(cell.mark, status.heldBack ? bad : status.active ? good : grey);
    setColour(cell.state, status.active ? plain : grey);
    setColour(cell.line, status.heldBack || status.failed ? bad : grey);
  }
}

}  // namespace tellaxis::ui
