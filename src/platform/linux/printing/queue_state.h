// Queue state: what a print server's words about a queue say of the printer behind it.
#pragma once

#include <string>
#include <vector>

#include "platform/printer_state.h"

namespace tellaxis::platform {

/// As the server tells it: `printer-state`, `printer-is-accepting-jobs` and `printer-state-reasons`.
struct QueueStatus {
  bool stopped = false;
  bool acceptingJobs = true;
  std::vector<std::string> reasons;
};

PrinterState stateFrom(const QueueStatus& status);

}  // namespace tellaxis::platform
