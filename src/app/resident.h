// Resident: the bridge without a window, from start-up to the request to stop.
#pragma once

#include <functional>
#include <string>

#include "app/job_metrics.h"
#include "core/bridge.h"
#include "core/devices.h"
#include "platform/program.h"

namespace tellaxis {

/// Runs start-up, calls `ready`, then polls every `interval` milliseconds until `stop`; ends the documents that are
/// still open. A tick that took longer than the interval is followed by the next one at once. `mainFolder` is in code
/// page 1252; `metrics` is null where there are none.
void runResident(Bridge& bridge, Devices& devices, DeviceSetup& setup, const std::string& mainFolder, int interval,
                 platform::StopRequest& stop, const std::function<void()>& ready, JobMetrics* metrics);

}  // namespace tellaxis
