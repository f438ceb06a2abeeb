// Trace: the line that is written.
#include "platform/linux/trace.h"

#include <string>

#include "platform/linux/standard_error.h"

namespace tellaxis::platform {

void ErrorTrace::failed(std::string_view operation, std::string_view subject, std::string_view reason) {
  std::string line = "passo fallito: ";
  line.append(operation).append(" ").append(subject).append(": ").append(reason);
  writeErrorLine(line);
}

void NoTrace::failed(std::string_view, std::string_view, std::string_view) {}

}  // namespace tellaxis::platform
