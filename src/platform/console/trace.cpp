// Trace: the line that is written.
#include "platform/console/trace.h"

#include <string>

#include "platform/console/error_line.h"

namespace tellaxis::platform {

std::string lineOf(std::string_view operation, std::string_view subject, std::string_view reason) {
  std::string line = "passo fallito: ";
  line.append(operation).append(" ").append(subject).append(": ").append(reason);
  return line;
}

void ErrorTrace::failed(std::string_view operation, std::string_view subject, std::string_view reason) {
  writeErrorLine(lineOf(operation, subject, reason));
}

void NoTrace::failed(std::string_view, std::string_view, std::string_view) {}

std::unique_ptr<Trace> makeTrace(bool printed, Trace* listener) {
  std::unique_ptr<Trace> trace = std::make_unique<NoTrace>();
  if (printed) trace = std::make_unique<ErrorTrace>();
  if (listener != nullptr) trace = std::make_unique<ListenedTrace>(std::move(trace), *listener);
  return trace;
}

}  // namespace tellaxis::platform
