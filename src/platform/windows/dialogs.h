// Dialogs of a program without a window: messages as lines of text.
#pragma once

#include "platform/dialogs.h"

namespace tellaxis::platform::windows {

class ConsoleDialogs : public Dialogs {
 public:
  Answer show(std::string_view text, std::string_view title, Buttons buttons) override;
  void processEvents() override {}
};

}  // namespace tellaxis::platform::windows
