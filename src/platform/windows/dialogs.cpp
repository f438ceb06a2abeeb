// Dialogs of a program without a window: a line on standard error, answered at once.
#include "platform/windows/dialogs.h"

#include <cstdio>

#include "platform/windows/native.h"

namespace tellaxis::platform::windows {

Answer ConsoleDialogs::show(std::string_view text, std::string_view title, Buttons buttons) {
  std::string line(title);
  line.append(": ").append(text).append("\n");
  std::fputs(utf8FromNarrow(line).c_str(), stderr);
  std::fflush(stderr);
  return buttons == Buttons::yesNo ? Answer::yes : Answer::ok;
}

}  // namespace tellaxis::platform::windows
