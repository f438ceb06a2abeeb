// Trace: where every failing step is reported, off unless somebody asked to see it.
#pragma once

#include <string_view>

namespace tellaxis::platform {

/// Receives each step that failed and was skipped. Reporting never fails and never changes what the program does.
class Trace {
 public:
  virtual ~Trace() = default;

  /// `operation` names what was tried ("move"), `subject` the file, port or printer it was tried on,
  /// `reason` why it failed in the words of the operating system or of this program. All in code page 1252.
  virtual void failed(std::string_view operation, std::string_view subject, std::string_view reason) = 0;
};

}  // namespace tellaxis::platform
