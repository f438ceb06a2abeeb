// Dialogs: one line a message.
#include "platform/console/dialogs.h"

#include <string>

#include "platform/console/error_line.h"

namespace tellaxis::platform {

Answer ConsoleDialogs::show(std::string_view text, std::string_view title, Buttons buttons) {
  writeErrorLine(std::string(title).append(": ").append(text));
  return buttons == Buttons::yesNo ? Answer::yes : Answer::ok;
}

void ConsoleDialogs::processEvents() {}

}  // namespace tellaxis::platform
