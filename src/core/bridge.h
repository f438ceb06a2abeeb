// Bridge: the state that all procedures share.
#pragma once

#include "core/main_form.h"
#include "core/settings.h"
#include "platform/host.h"
#include "platform/job_notices.h"

namespace tellaxis {

/// The computer, the main form and the values loaded from the settings file. There is one in a program, used from one
/// thread.
struct Bridge {
  explicit Bridge(platform::Host& services) : host(services), form(services) {}

  platform::Host& host;
  MainForm form;
  Settings settings;
  platform::JobNotices* notices = nullptr;  ///< where a job is taken as soon as it is whole, not at the next tick only
};

}  // namespace tellaxis
