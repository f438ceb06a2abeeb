// Traces of Windows: failing steps on standard error, or nowhere.
#pragma once

#include "platform/trace.h"

namespace tellaxis::platform::windows {

class ErrorTrace : public Trace {
 public:
  /// A trace that is not `on` says nothing.
  explicit ErrorTrace(bool on) : on_(on) {}

  void failed(std::string_view operation, std::string_view subject, std::string_view reason) override;

 private:
  bool on_;
};

}  // namespace tellaxis::platform::windows
