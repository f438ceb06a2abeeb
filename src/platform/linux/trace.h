// Trace: failing steps on standard error, or nowhere.
#pragma once

#include "platform/trace.h"

namespace tellaxis::platform {

/// One line a failing step: "passo fallito: OPERATION SUBJECT: REASON".
class ErrorTrace : public Trace {
 public:
  void failed(std::string_view operation, std::string_view subject, std::string_view reason) override;
};

class NoTrace : public Trace {
 public:
  void failed(std::string_view operation, std::string_view subject, std::string_view reason) override;
};

}  // namespace tellaxis::platform
