// Message boxes: the program's questions and messages on the screen.
#pragma once

#include <wx/msgdlg.h>
#include <wx/weakref.h>

#include <vector>

#include "platform/dialogs.h"
#include "ui/notice_window.h"

namespace tellaxis::ui {

/// A question waits for its answer. A message does too, unless a tick raises it: the tick goes on beside the message,
/// and one that is still open is not raised a second time but counts how often it was.
class MessageBoxes : public platform::Dialogs {
 public:
  platform::Answer show(std::string_view text, std::string_view title, platform::Buttons buttons) override;
  void processEvents() override;

  /// Says whether what is raised from here on comes from a tick.
  void duringTick(bool ticking) { ticking_ = ticking; }

  /// The program has to end: every open box, and every one to come, is answered OK or No. True where one was
  /// open; it goes as soon as the toolkit comes to it.
  bool answerAll();

 private:
  void notify(const wxString& text, const wxString& title);

  std::vector<wxDialog*> open_;
  std::vector<wxWeakRef<NoticeWindow>> notices_;
  bool ticking_ = false;
  bool answering_ = false;
};

}  // namespace tellaxis::ui
