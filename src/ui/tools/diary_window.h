// Diary window: the jobs of a day, what each looks like, and printing one again.
#pragma once

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/frame.h>
#include <wx/sizer.h>
#include <wx/textctrl.h>

#include <memory>
#include <string>
#include <vector>

#include "ui/model/background_work.h"
#include "ui/model/diary_list.h"
#include "ui/tools/page_view.h"
#include "ui/tools/table.h"
#include "ui/tools/work_line.h"

namespace tellaxis::ui {

class DiaryWindow : public wxFrame {
 public:
  explicit DiaryWindow(std::shared_ptr<BackgroundWork> work);

 private:
  struct LoadedDay {
    std::vector<Day> days;
    Day day;
    std::vector<DiaryEntry> entries;
  };

  wxSizer* makeChoices(wxWindow* parent);
  void addChoice(wxWindow* parent, wxSizer* row, wxChoice*& choice, const char* label, const char* help);
  void makeTable(wxWindow* parent);
  wxSizer* makeLook(wxWindow* parent);
  wxSizer* makeButtons(wxWindow* parent);

  void load();
  void show(LoadedDay& loaded);
  void filter();
  const DiaryEntry* chosen() const;
  void choiceChanged();
  void lookAtChosen();
  void showLook(const std::string& id, const JobLook& look);
  void showText(const DiaryEntry& entry, const std::string& more);
  void reprintChosen();
  void busyChanged();

  std::shared_ptr<BackgroundWork> work_;
  DiaryList list_;
  std::vector<Day> days_;  ///< in the order of the choice
  wxChoice* day_ = nullptr;
  wxChoice* device_ = nullptr;
  wxCheckBox* problems_ = nullptr;
  wxButton* refresh_ = nullptr;
  Table* table_ = nullptr;
  wxTextCtrl* text_ = nullptr;
  PageView* page_ = nullptr;
  WorkLine* looking_ = nullptr;  ///< for the chosen job's page
  WorkLine* line_ = nullptr;     ///< for everything else
  wxButton* reprint_ = nullptr;
};

}  // namespace tellaxis::ui
