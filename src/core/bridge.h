// Bridge: the state that all procedures share.
#pragma once

#include <functional>
#include <utility>

#include "core/fiscal_outcome.h"
#include "core/form/main_form.h"
#include "core/settings.h"
#include "platform/bridge_options.h"
#include "platform/host.h"
#include "platform/job_notices.h"

namespace tellaxis {

class Paper;

/// The computer, the main form and the values loaded from the settings file. There is one in a program, used from one
/// thread.
struct Bridge {
  explicit Bridge(platform::Host& services, platform::BridgeOptions switchedOn = {})
      : host(services), options(std::move(switchedOn)), form(services) {}

  platform::Host& host;
  const platform::BridgeOptions options;
  /// True once the program is to end: the job under way is finished, no other is begun.
  std::function<bool()> stopRequested = [] { return false; };
  MainForm form;
  Settings settings;
  platform::JobNotices* notices = nullptr;  ///< where a job is taken as soon as it is whole, not at the next tick only
  Paper* paper = nullptr;                   ///< where printers are asked for their state; without it they never are
  FiscalOutcome fiscalOutcome = FiscalOutcome::notHandedOver;  ///< of the last fiscal job
};

}  // namespace tellaxis
