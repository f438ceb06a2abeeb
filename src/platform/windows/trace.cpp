// Traces of Windows: one line a failing step.
#include "platform/windows/trace.h"

#include <string>

#include "platform/windows/standard_error.h"

namespace tellaxis::platform::windows {

void ErrorTrace::failed(std::string_view operation, std::string_view subject, std::string_view reason) {
  if (!on_) return;
  std::string line = "passo fallito: ";
  line.append(operation).append(" ").append(subject).append(": ").append(reason);
  writeErrorLine(line);
}

}  // namespace tellaxis::platform::windows
