// Dialogs of a program without a window: a line on standard error, answered at once.
#include "platform/windows/dialogs.h"

#include <string>

#include "platform/windows/standard_error.h"

namespace tellaxis::platform::windows {

Answer ConsoleDialogs::show(std::string_view text, std::string_view title, Buttons buttons) {
  writeErrorLine(std::string(title).append(": ").append(text));
  return buttons == Buttons::yesNo ? Answer::yes : Answer::ok;
}

}  // namespace tellaxis::platform::windows
