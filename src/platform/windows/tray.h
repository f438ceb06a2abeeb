// Tray of Windows: the notification area by the shell's narrow-character operation.
#pragma once

#include "platform/trace.h"
#include "platform/tray.h"

namespace tellaxis::platform::windows {

class Tray : public platform::Tray {
 public:
  explicit Tray(Trace& trace) : trace_(trace) {}

  bool available() override;
  bool notify(TrayAction action, const TrayRecord& record) override;

 private:
  Trace& trace_;
};

}  // namespace tellaxis::platform::windows
