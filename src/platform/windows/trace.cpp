// Traces of Windows: one line a failing step.
#include "platform/windows/trace.h"

#include <cstdio>

#include "platform/windows/native.h"

namespace tellaxis::platform::windows {

void ErrorTrace::failed(std::string_view operation, std::string_view subject, std::string_view reason) {
  if (!on_) return;
  std::string line(operation);
  line.append(" ").append(subject).append(": ").append(reason).append("\n");
  std::fputs(utf8FromNarrow(line).c_str(), stderr);
  std::fflush(stderr);
}

}  // namespace tellaxis::platform::windows
