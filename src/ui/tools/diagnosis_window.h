// Diagnosis window: what is wrong and what to do, and a sample job for each device.
#pragma once

#include <wx/button.h>
#include <wx/frame.h>
#include <wx/textctrl.h>

#include <memory>
#include <vector>

#include "ui/model/background_work.h"
#include "ui/model/diagnosis.h"
#include "ui/tools/table.h"
#include "ui/tools/work_line.h"

namespace tellaxis::ui {

class DiagnosisWindow : public wxFrame {
 public:
  explicit DiagnosisWindow(std::shared_ptr<BackgroundWork> work);

 private:
  void makeTable(wxWindow* parent);
  wxSizer* makeTrials(wxWindow* parent);
  wxSizer* makeButtons(wxWindow* parent);
  wxButton* addButton(wxWindow* parent, wxSizer* row, const char* label, const char* help, std::function<void()> press);
  void look(bool network);
  void tryDevice(Device device);
  void show(std::vector<Finding>& findings);
  void showChosen();
  void busyChanged();

  std::shared_ptr<BackgroundWork> work_;
  Diagnosis diagnosis_;
  Table* table_ = nullptr;
  wxTextCtrl* details_ = nullptr;
  WorkLine* line_ = nullptr;
  std::vector<wxButton*> actions_;  ///< that wait while something goes on
};

}  // namespace tellaxis::ui
