// Main window: building the form from its layout, and handing what the user does to the rules.
#include "ui/main_window.h"

#include <wx/app.h>
#include <wx/button.h>
#include <wx/dirdlg.h>
#include <wx/display.h>
#include <wx/filedlg.h>
#include <wx/menu.h>
#include <wx/settings.h>
#include <wx/statbox.h>

#include "core/application.h"
#include "core/exit.h"
#include "core/ini/ini.h"
#include "core/settings.h"
#include "courtesy/serial_printer.h"
#include "courtesy/setup.h"
#include "platform/dialogs.h"
#include "slip/setup.h"
#include "ui/about_window.h"
#include "ui/guide.h"
#include "ui/native.h"
#include "ui/program_icon.h"
#include "ui/text.h"
#include "ui/tools/diagnosis_window.h"
#include "ui/tools/diary_window.h"
#include "ui/tools/printers_window.h"
#include "ui/tools/slip_test_window.h"

namespace tellaxis::ui {

namespace {

constexpr int columnCount = 2;
constexpr int smallGap = 4;
constexpr int groupPadding = 5;
constexpr int gap = 8;
constexpr int largestIcon = 48;
/// What the frame's own parts may take of the screen.
constexpr int frameBorder = 2;
constexpr int titleAndMenu = 56;
/// Of the fields, where the screen has no more.
constexpr int leastHeight = 120;
constexpr double twipsPerInch = 1440;

/// In code page 1252, as every message box.
constexpr const char* howToKeepADiary =
    "Il diario non \xE8 attivo.\n\nPer attivarlo si aggiunge al file devices.toml della cartella di Tellaxis, nella\n"
    "tabella [bridge]:\n\n[bridge]\ndiary = \"diario\"\narchive = true\n\n"
    "e si riavvia Tellaxis. Con archive = true di ogni lavoro resta il file, e si\npu\xF2 stamparlo di nuovo.";

/// What else happens when the user changes a control.
struct ChangeProcedure {
  ControlMember control;
  void (*procedure)(Bridge& bridge);
};

constexpr ChangeProcedure changeProcedures[] = {
    {&MainForm::RF_Printer, RF_Printer_Change},
    {&MainForm::Cort_Printer, Cort_Printer_Change},
};

bool isCheckBox(const Field& field) { return std::holds_alternative<CheckBox MainForm::*>(field.control); }

bool isUsed(const Field& field) { return field.label != nullptr; }

bool standsAlone(const Row& row) { return isCheckBox(row[0]); }

/// A label longer than this is given a line to itself, with its field.
constexpr std::size_t longLabel = 30;

bool hasLongLabel(const Row& row) { return std::string_view(row[0].label).size() > longLabel; }

int widestLabel(const wxWindow& window, int column) {
  int widest = 0;
  for (const GroupLayout& group : mainLayout())
    for (const Row& row : group.rows)
      if (group.column == column && !standsAlone(row) && !hasLongLabel(row))
        widest = std::max(widest, window.GetTextExtent(fromUtf8(row[0].label)).x);
  return widest;
}

/// With a large font the columns stand one below the other.
void stackWhereTooWide(wxSizer& columns, int width) {
  if (columns.GetMinSize().x <= width) return;
  static_cast<wxBoxSizer&>(columns).SetOrientation(wxVERTICAL);
  for (wxSizerItem* column : columns.GetChildren()) column->SetProportion(0);
}

}  // namespace

MainWindow::MainWindow(Bridge& bridge, const Activity& activity, std::shared_ptr<BackgroundWork> work,
                       std::function<void()> ended)
    : wxFrame(nullptr, wxID_ANY, toWx(applicationTitle)),
      bridge_(bridge),
      work_(std::move(work)),
      ended_(std::move(ended)),
      form_(*this),
      icon_(programIcon(largestIcon)),
      controls_(
          bridge.form, [this](const ControlMember& control) { userChanged(control); },
          [this](const char* key) {
            return LeggiIni(bridge_.host, rawSection, key, Null{}, bridge_.settings.settingsFile);
          }) {
  SetIcons(programIcons());
  makeMenus();

  auto* panel = new wxPanel(this);
  status_ = new StatusStrip(panel, bridge, activity);
  auto* scrolled = new wxScrolledWindow(panel, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxVSCROLL | wxTAB_TRAVERSAL);
  scrolled->SetScrollRate(0, FromDIP(10));
  scrolled->SetSizer(makeColumns(scrolled));

  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(status_, wxSizerFlags().Expand().Border(wxALL, FromDIP(smallGap)));
  all->Add(scrolled, wxSizerFlags(1).Expand());
  panel->SetSizer(all);
  all->Add(makeButtons(panel), wxSizerFlags().Expand().Border(wxALL, FromDIP(gap)));

  Bind(wxEVT_MOTION, &MainWindow::mouseMoved, this);
  Bind(wxEVT_CLOSE_WINDOW, [this](const wxCloseEvent&) { unload(); });
  fitToScreen(*panel, *scrolled);
}

void MainWindow::fitToScreen(wxWindow& panel, wxScrolledWindow& scrolled) {
  const wxSize screen = wxDisplay(this).GetClientArea().GetSize() - FromDIP(wxSize(2 * frameBorder, titleAndMenu));
  status_->fitWidth(screen.x - 2 * FromDIP(smallGap));
  stackWhereTooWide(*scrolled.GetSizer(), screen.x);
  const wxSize columns = scrolled.GetSizer()->GetMinSize();
  scrolled.SetMinSize(columns);
  wxSize wanted = panel.GetSizer()->GetMinSize();
  if (wanted.y > screen.y) wanted.x += wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, this);
  wanted.DecTo(screen);
  scrolled.SetMinSize(wxSize(columns.x, FromDIP(leastHeight)));
  SetClientSize(wanted);
  Centre();
}

void MainWindow::makeMenus() {
  auto* file = new wxMenu;
  file->Append(wxID_EXIT, "&Esci", "");
  auto* tools = new wxMenu;
  const int slipTest = tools->Append(wxID_ANY, "&Epson TM-U295")->GetId();
  const int printers = tools->Append(wxID_ANY, "&Stampanti - Porte")->GetId();
  tools->AppendSeparator();
  const int diagnosis = tools->Append(wxID_ANY, "&Diagnosi")->GetId();
  const int diary = tools->Append(wxID_ANY, work_->keepsDiary() ? "D&iario" : "D&iario (non attivo)")->GetId();
  auto* about = new wxMenu;
  about->Append(wxID_HELP, "&Guida")->Enable(guideIsThere());
  about->Append(wxID_ABOUT, "&About Tellaxis");
  auto* bar = new wxMenuBar;
  bar->Append(file, "&File");
  bar->Append(tools, "S&trumenti");
  bar->Append(about, "&About");
  SetMenuBar(bar);
  Bind(
      wxEVT_MENU, [this](const wxCommandEvent&) { Esci_Click(bridge_, form_); }, wxID_EXIT);
  Bind(
      wxEVT_MENU, [this](const wxCommandEvent&) { showTool<SlipTestWindow>(slipTest_, bridge_); }, slipTest);
  Bind(
      wxEVT_MENU, [this](const wxCommandEvent&) { showTool<PrintersWindow>(printers_, bridge_); }, printers);
  Bind(
      wxEVT_MENU, [this](const wxCommandEvent&) { showTool<DiagnosisWindow>(diagnosis_, work_); }, diagnosis);
  Bind(
      wxEVT_MENU, [this](const wxCommandEvent&) { showDiary(); }, diary);
  Bind(
      wxEVT_MENU, [](const wxCommandEvent&) { showGuide(); }, wxID_HELP);
  Bind(
      wxEVT_MENU, [this](const wxCommandEvent&) { showTool<AboutWindow>(about_); }, wxID_ABOUT);
}

template <typename ToolWindow, typename... Arguments>
void MainWindow::showTool(wxWeakRef<wxFrame>& tool, Arguments&&... arguments) {
  if (!tool) {
    tool = new ToolWindow(std::forward<Arguments>(arguments)...);
    tool->CentreOnScreen();
  }
  tool->Show();
  tool->Raise();
}

wxSizer* MainWindow::makeColumns(wxScrolledWindow* parent) {
  auto* columns = new wxBoxSizer(wxHORIZONTAL);
  for (int column = 0; column < columnCount; ++column) {
    auto* groups = new wxBoxSizer(wxVERTICAL);
    const int labelWidth = widestLabel(*parent, column);
    for (const GroupLayout& group : mainLayout())
      if (group.column == column)
        groups->Add(makeGroup(parent, group, labelWidth),
                    wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(smallGap)));
    // Each in proportion to what it needs: with equal shares the narrow one would ask for as much as the wide one.
    columns->Add(groups, wxSizerFlags(groups->GetMinSize().x).Expand().Border(wxLEFT | wxRIGHT, FromDIP(smallGap)));
  }
  return columns;
}

wxSizer* MainWindow::makeGroup(wxWindow* parent, const GroupLayout& group, int labelWidth) {
  auto* box = new wxStaticBoxSizer(wxVERTICAL, parent, fromUtf8(group.title));
  for (const Row& row : group.rows)
    box->Add(makeRow(box->GetStaticBox(), group, row, labelWidth),
             wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(groupPadding)));
  return box;
}

wxSizer* MainWindow::makeRow(wxWindow* parent, const GroupLayout& group, const Row& row, int labelWidth) {
  auto* line = new wxBoxSizer(wxHORIZONTAL);
  for (const Field& field : row) {
    if (!isUsed(field)) break;
    const bool first = &field == row.data();
    if (!first) line->AddSpacer(FromDIP(gap));
    if (!isCheckBox(field)) {
      auto* label = new wxStaticText(parent, wxID_ANY, fromUtf8(field.label));
      if (first && !hasLongLabel(row)) label->SetMinSize(wxSize(labelWidth, -1));
      controls_.addLabel(label, group);
      line->Add(label, wxSizerFlags().CenterVertical().Border(wxRIGHT, FromDIP(gap)));
    }
    addField(parent, line, group, field);
  }
  return line;
}

void MainWindow::addField(wxWindow* parent, wxSizer* line, const GroupLayout& group, const Field& field) {
  wxWindow* widget = controls_.make(parent, field, group);
  const bool takesTheRest = field.columns == 0 && !isCheckBox(field);
  line->Add(widget, wxSizerFlags(takesTheRest ? 1 : 0).CenterVertical());
  if (field.browse != Browse::none) {
    auto* button = new wxButton(parent, wxID_ANY, fromUtf8("…"), wxDefaultPosition, wxDefaultSize, wxBU_EXACTFIT);
    const wxString help = fromUtf8("Sfoglia: ") + fromUtf8(field.label);
    button->SetToolTip(help);
    setAccessible(*button, help, help);
    button->Bind(wxEVT_BUTTON, [this, widget, &field](const wxCommandEvent&) { browse(widget, field); });
    line->Add(button, wxSizerFlags().CenterVertical().Border(wxLEFT, FromDIP(smallGap)));
  }
  if (field.button != nullptr) {
    auto* button = new wxButton(parent, wxID_ANY, fromUtf8(field.button));
    button->SetToolTip(fromUtf8(field.buttonHelp));
    button->Bind(wxEVT_BUTTON, [this](const wxCommandEvent&) { Command1_Click(bridge_); });
    line->Add(button, wxSizerFlags().CenterVertical().Border(wxLEFT, FromDIP(gap)));
  }
}

wxSizer* MainWindow::makeButtons(wxWindow* parent) {
  saved_ = new wxStaticText(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxST_NO_AUTORESIZE);
  auto* save = new wxButton(parent, wxID_ANY, "&Salva");
  save->SetToolTip("Scrive le impostazioni nel file _Tellaxis.ini e le applica");
  save->Bind(wxEVT_BUTTON, [this](const wxCommandEvent&) { cmdSalva(); });
  auto* hide = new wxButton(parent, wxID_ANY, "&Nascondi");
  hide->SetToolTip(fromUtf8("Nasconde la finestra; un clic sull'icona vicino all'orologio la riporta"));
  hide->Bind(wxEVT_BUTTON, [this](const wxCommandEvent&) { cmdNascondi_Click(bridge_, trayIcon_, form_); });
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(saved_, wxSizerFlags(1).CenterVertical());
  row->Add(save);
  row->Add(hide, wxSizerFlags().Border(wxLEFT, FromDIP(gap)));
  return row;
}

void MainWindow::showDiary() {
  if (work_->keepsDiary()) return showTool<DiaryWindow>(diary_, work_);
  bridge_.host.dialogs.show(howToKeepADiary, applicationTitle, platform::Buttons::ok);
}

void MainWindow::browse(wxWindow* widget, const Field& field) {
  const wxString title = fromUtf8(field.label);
  wxString chosen;
  if (field.browse == Browse::folder)
    chosen = wxDirSelector(title, "", wxDD_DEFAULT_STYLE, wxDefaultPosition, this);
  else
    chosen = wxFileSelector(title, "", "", "", "*", wxFD_OPEN, this);
  if (!chosen.empty()) controls_.enter(widget, chosen);
}

void MainWindow::userChanged(const ControlMember& control) {
  saved_->SetLabelText("Modifiche non salvate");
  for (const ChangeProcedure& row : changeProcedures)
    if (row.control == control) row.procedure(bridge_);
}

void MainWindow::cmdSalva() {
  cmdSalva_Click(bridge_);
  refresh();
  saved_->SetLabelText(warning_.empty() ? wxString("Impostazioni salvate") : toWx(warning_));
}

void MainWindow::refresh() {
  controls_.show();
  status_->refresh();
  if (closedFolders_) warning_ = closedFolders_();
  status_->warn(warning_);
}

void MainWindow::mouseMoved(wxMouseEvent& event) {
  Form_MouseMove(form_, event.GetX(), ScaleMode::pixels, twipsPerInch / GetDPI().x);
  event.Skip();
}

void MainWindow::unload() {
  if (unloaded_) return;
  unloaded_ = true;
  Form_Unload(bridge_, trayIcon_, form_);
  for (wxWeakRef<wxFrame>* tool : {&slipTest_, &printers_, &diagnosis_, &diary_, &about_})
    if (*tool) (*tool)->Destroy();
  Destroy();
  ended_();
}

void MainWindow::Form::Show() {
  window_.Iconize(false);
  window_.wxFrame::Show();
  window_.Raise();
}

void MainWindow::Form::Hide() { window_.wxFrame::Hide(); }
void MainWindow::Form::Minimize() { window_.Iconize(); }
void MainWindow::Form::Unload() { window_.unload(); }
std::string MainWindow::Form::Caption() const { return fromWx(window_.GetTitle()); }
std::uintptr_t MainWindow::Form::hWnd() const { return windowHandle(window_); }
std::uintptr_t MainWindow::Form::Icon() const { return iconHandle(window_.icon_); }

}  // namespace tellaxis::ui
