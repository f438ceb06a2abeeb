// Notice window: a message that nobody has to answer, with how often it was raised and when last.
#pragma once

#include <wx/dialog.h>
#include <wx/stattext.h>

namespace tellaxis::ui {

/// Stays in front of other windows until it is closed, without taking the keyboard from them.
class NoticeWindow : public wxDialog {
 public:
  NoticeWindow(const wxString& text, const wxString& title);

  /// The same message was raised once more.
  void raisedAgain();

  bool says(const wxString& text, const wxString& title) const { return text_ == text && GetTitle() == title; }

 private:
  void showTimes();

  wxString text_;
  wxStaticText* times_ = nullptr;
  int count_ = 1;
};

}  // namespace tellaxis::ui
