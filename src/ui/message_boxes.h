// Message boxes: the program's questions and messages on the screen.
#pragma once

#include <wx/msgdlg.h>

#include <vector>

#include "platform/dialogs.h"

namespace tellaxis::ui {

class MessageBoxes : public platform::Dialogs {
 public:
  platform::Answer show(std::string_view text, std::string_view title, platform::Buttons buttons) override;
  void processEvents() override;

  /// The program has to end: every open box, and every one to come, is answered OK or No. True where one was
  /// open; it goes as soon as the toolkit comes to it.
  bool answerAll();

 private:
  std::vector<wxDialog*> open_;
  bool answering_ = false;
};

}  // namespace tellaxis::ui
