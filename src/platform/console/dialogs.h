// Dialogs: message boxes of a program without a window.
#pragma once

#include "platform/dialogs.h"

namespace tellaxis::platform {

/// A message is a line "titolo: testo" on standard error and is answered at once.
class ConsoleDialogs : public Dialogs {
 public:
  Answer show(std::string_view text, std::string_view title, Buttons buttons) override;
  void processEvents() override;
};

}  // namespace tellaxis::platform
