// Tray: a program without a window has no place for an icon.
#pragma once

#include "platform/trace.h"
#include "platform/tray.h"

namespace tellaxis::platform {

class NoTray : public Tray {
 public:
  explicit NoTray(Trace& trace) : trace_(trace) {}

  bool available() override;
  bool notify(TrayAction action, const TrayRecord& record) override;

 private:
  Trace& trace_;
};

}  // namespace tellaxis::platform
