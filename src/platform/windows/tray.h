// Tray of Windows: the notification area by the shell's narrow-character operation.
#pragma once

#include "platform/trace.h"
#include "platform/tray.h"

namespace tellaxis::platform {

class WindowsTray : public Tray {
 public:
  explicit WindowsTray(Trace& trace) : trace_(trace) {}

  bool available() override;
  bool notify(TrayAction action, const TrayRecord& record) override;

 private:
  Trace& trace_;
};

}  // namespace tellaxis::platform
