// Diary window: choices above, the table and the chosen job side by side, and what may be done below.
#include "ui/tools/diary_window.h"

#include <wx/display.h>
#include <wx/panel.h>
#include <wx/stattext.h>

#include <algorithm>
#include <iterator>

#include "ui/native.h"
#include "ui/program_icon.h"
#include "ui/text.h"
#include "ui/tools/confirm.h"

namespace tellaxis::ui {

namespace {

constexpr TableColumn columns[] = {{"Ora", 10},    {"Periferica", 12}, {"Esito", 15},
                                   {"Lavoro", 20}, {"Motivo", 40},     {"ID", 14}};

/// In the order of the choice, behind the first, which is all of them.
constexpr Device devices[] = {Device::fiscalPrinter, Device::courtesyPrinter, Device::slipPrinter, Device::display};

constexpr int wantedWidth = 980;
constexpr int wantedHeight = 600;
constexpr int smallGap = 4;
constexpr int gap = 8;

constexpr const char* notKept =
    "\n\nIl file del lavoro non è stato conservato: archive = true, in devices.toml, conserva i prossimi.";
constexpr const char* gone = "\n\nIl file del lavoro è vuoto, o non c'è più.";

/// As a text box shows them: lines, and nothing that is no letter.
wxString readable(std::string text) {
  std::erase(text, '\r');
  std::ranges::replace_if(
      text, [](char byte) { return static_cast<unsigned char>(byte) < ' ' && byte != '\n' && byte != '\t'; }, '.');
  return toWx(text);
}

}  // namespace

DiaryWindow::DiaryWindow(std::shared_ptr<BackgroundWork> work)
    : wxFrame(nullptr, wxID_ANY, "Diario"), work_(std::move(work)) {
  SetIcons(programIcons());
  auto* panel = new wxPanel(this);
  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(makeChoices(panel), wxSizerFlags().Expand().Border(wxALL, FromDIP(gap)));
  makeTable(panel);
  auto* middle = new wxBoxSizer(wxHORIZONTAL);
  middle->Add(table_, wxSizerFlags(3).Expand());
  middle->Add(makeLook(panel), wxSizerFlags(2).Expand().Border(wxLEFT, FromDIP(gap)));
  all->Add(middle, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT, FromDIP(gap)));
  all->Add(makeButtons(panel), wxSizerFlags().Expand().Border(wxALL, FromDIP(gap)));
  panel->SetSizer(all);
  wxSize size = FromDIP(wxSize(wantedWidth, wantedHeight));
  size.DecTo(wxDisplay(this).GetClientArea().GetSize());
  SetSize(size);
  SetMinSize(size / 2);
  table_->SetFocus();
  load();
}

wxSizer* DiaryWindow::makeChoices(wxWindow* parent) {
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  addChoice(parent, row, day_, "Giorno", "Il giorno di cui si vedono i lavori");
  day_->Bind(wxEVT_CHOICE, [this](const wxCommandEvent&) { load(); });
  addChoice(parent, row, device_, "Periferica", "La periferica di cui si vedono i lavori");
  device_->Append("Tutte");
  for (const Device device : devices) device_->Append(toWx(namesOf(device).italian));
  device_->SetSelection(0);
  device_->Bind(wxEVT_CHOICE, [this](const wxCommandEvent&) { filter(); });
  problems_ = new wxCheckBox(parent, wxID_ANY, "Solo i &problemi");
  problems_->SetToolTip("Mostra solo i lavori a cui qualcuno deve badare");
  problems_->Bind(wxEVT_CHECKBOX, [this](const wxCommandEvent&) { filter(); });
  row->Add(problems_, wxSizerFlags().CenterVertical());
  row->AddStretchSpacer();
  refresh_ = new wxButton(parent, wxID_ANY, "&Aggiorna");
  refresh_->SetToolTip("Legge di nuovo il diario");
  refresh_->Bind(wxEVT_BUTTON, [this](const wxCommandEvent&) { load(); });
  row->Add(refresh_, wxSizerFlags().CenterVertical());
  return row;
}

void DiaryWindow::addChoice(wxWindow* parent, wxSizer* row, wxChoice*& choice, const char* label, const char* help) {
  row->Add(new wxStaticText(parent, wxID_ANY, label), wxSizerFlags().CenterVertical().Border(wxRIGHT, FromDIP(gap)));
  choice = new wxChoice(parent, wxID_ANY);
  choice->SetToolTip(help);
  setAccessible(*choice, label, help);
  row->Add(choice, wxSizerFlags().CenterVertical().Border(wxRIGHT, FromDIP(2 * gap)));
}

void DiaryWindow::makeTable(wxWindow* parent) {
  table_ = new Table(
      parent, columns,
      [this](std::size_t row, unsigned column) {
        return toWx(list_.cell(row, static_cast<DiaryList::Column>(column)));
      },
      [this](std::size_t row) {
        return list_.isProblem(row) ? std::optional(wxColour(0xB0, 0x1E, 0x1E)) : std::nullopt;
      });
  setAccessible(*table_, "Lavori", "I lavori del giorno, l'ultimo per primo");
  table_->Bind(wxEVT_DATAVIEW_SELECTION_CHANGED, [this](const wxDataViewEvent&) { choiceChanged(); });
}

wxSizer* DiaryWindow::makeLook(wxWindow* parent) {
  text_ = new wxTextCtrl(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxTE_MULTILINE | wxTE_READONLY);
  text_->SetFont(wxFontInfo(GetFont().GetFractionalPointSize()).Family(wxFONTFAMILY_TELETYPE));
  text_->SetMargins(FromDIP(smallGap), FromDIP(smallGap));
  setAccessible(*text_, "Lavoro", fromUtf8("Il lavoro scelto: com'è finito, e il suo testo"));
  page_ = new PageView(parent);
  page_->Hide();
  looking_ = new WorkLine(parent, [] {});
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(text_, wxSizerFlags(2).Expand());
  column->Add(page_, wxSizerFlags(3).Expand().Border(wxTOP, FromDIP(smallGap)));
  column->Add(looking_, wxSizerFlags().Expand().Border(wxTOP, FromDIP(smallGap)));
  return column;
}

wxSizer* DiaryWindow::makeButtons(wxWindow* parent) {
  line_ = new WorkLine(parent, [this] { busyChanged(); });
  reprint_ = new wxButton(parent, wxID_ANY, "&Ristampa");
  reprint_->SetToolTip("Rimette in coda il lavoro scelto");
  reprint_->Bind(wxEVT_BUTTON, [this](const wxCommandEvent&) { reprintChosen(); });
  auto* close = new wxButton(parent, wxID_ANY, "&Chiudi");
  close->SetToolTip("Chiude questa finestra");
  close->Bind(wxEVT_BUTTON, [this](const wxCommandEvent&) { Close(); });
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(line_, wxSizerFlags(1).CenterVertical());
  row->Add(reprint_, wxSizerFlags().Border(wxLEFT, FromDIP(gap)));
  row->Add(close, wxSizerFlags().Border(wxLEFT, FromDIP(gap)));
  return row;
}

/// The chosen day, at first the latest.
void DiaryWindow::load() {
  if (line_->isBusy()) return;
  const int chosenDay = day_->GetSelection();
  const auto wanted = chosenDay == wxNOT_FOUND ? std::nullopt : std::optional(days_[static_cast<unsigned>(chosenDay)]);
  line_->start<LoadedDay>(
      fromUtf8("Lettura del diario…"),
      [work = work_, wanted] {
        LoadedDay loaded{.days = work->days(), .day = {}, .entries = {}};
        loaded.day = wanted.value_or(loaded.days.back());
        loaded.entries = work->entries(loaded.day);
        return loaded;
      },
      [this](LoadedDay& loaded) { show(loaded); });
}

void DiaryWindow::show(LoadedDay& loaded) {
  days_ = std::move(loaded.days);
  std::ranges::reverse(days_);
  day_->Clear();
  for (const Day day : days_) day_->Append(toWx(dayForReader(day)));
  const auto shown = std::ranges::find(days_, loaded.day);
  if (shown != days_.end()) day_->SetSelection(static_cast<int>(shown - days_.begin()));
  GetChildren().front()->Layout();
  const DiaryEntry* before = chosen();
  const std::string id = before == nullptr ? std::string() : before->id;
  list_.load(std::move(loaded.entries));
  table_->reload(list_.size());
  if (list_.size() > 0) table_->choose(list_.rowOf(id).value_or(0));
  choiceChanged();
  line_->say(toWx(list_.summary()));
}

void DiaryWindow::filter() {
  DiaryQuery query{.problemsOnly = problems_->GetValue()};
  const int device = device_->GetSelection();
  if (device > 0) query.device = devices[device - 1];
  list_.filter(query);
  table_->reload(list_.size());
  choiceChanged();
  if (!line_->isBusy()) line_->say(toWx(list_.summary()));
}

const DiaryEntry* DiaryWindow::chosen() const {
  const auto row = table_->chosen();
  return row && *row < list_.size() ? &list_.at(*row) : nullptr;
}

void DiaryWindow::choiceChanged() {
  busyChanged();
  page_->Hide();
  const DiaryEntry* entry = chosen();
  if (entry == nullptr)
    text_->Clear();
  else
    showText(*entry, entry->copy.empty() ? notKept : "");
  text_->GetContainingSizer()->Layout();
  lookAtChosen();
}

/// Another job may be chosen while one is looked at: then that one follows.
void DiaryWindow::lookAtChosen() {
  const DiaryEntry* entry = chosen();
  if (entry == nullptr || entry->copy.empty() || looking_->isBusy()) return;
  looking_->start<JobLook>(
      fromUtf8("Anteprima…"), [work = work_, job = *entry] { return work->lookAt(job); },
      [this, id = entry->id](const JobLook& look) { showLook(id, look); });
}

void DiaryWindow::showLook(const std::string& id, const JobLook& look) {
  const DiaryEntry* entry = chosen();
  if (entry == nullptr || entry->id != id) return lookAtChosen();
  page_->Show();
  text_->GetContainingSizer()->Layout();
  const bool hasPage = page_->show(look.pages);
  page_->Show(hasPage);
  text_->GetContainingSizer()->Layout();
  if (look.text.empty()) return showText(*entry, gone);
  showText(*entry, "");
  text_->AppendText("\n\n" + readable(look.text));
  if (!hasPage && !look.printed.empty())
    text_->AppendText("\n\nCome esce dalla stampante:\n\n" + wxString::FromUTF8(look.printed.c_str()));
  text_->SetInsertionPoint(0);
  text_->ShowPosition(0);
}

void DiaryWindow::showText(const DiaryEntry& entry, const std::string& more) {
  text_->ChangeValue(toWx(detailsOf(entry)) + wxString::FromUTF8(more.c_str()));
}

void DiaryWindow::reprintChosen() {
  const DiaryEntry* entry = chosen();
  if (entry == nullptr || line_->isBusy()) return;
  const ReprintQuestion question = questionFor(*entry);
  const std::string id = entry->id;
  const wxString title = question.warning ? "Ristampa di un lavoro fiscale" : "Ristampa";
  const wxString yes = question.warning ? fromUtf8("&Sì, emetti di nuovo") : wxString("&Ristampa");
  if (!confirm(*this, toWx(question.text), title, yes, question.warning)) return;
  line_->start<std::string>(
      "Ristampa in corso" + fromUtf8("…"),
      [work = work_, id, consent = question.consent] { return work->reprint(id, consent); },
      [this](const std::string& result) { line_->say(wxString::FromUTF8(result.c_str())); });
}

void DiaryWindow::busyChanged() {
  const DiaryEntry* entry = chosen();
  const bool busy = line_->isBusy();
  refresh_->Enable(!busy);
  day_->Enable(!busy);
  reprint_->Enable(!busy && entry != nullptr && canReprint(*entry));
}

}  // namespace tellaxis::ui
