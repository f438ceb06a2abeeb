// Queue state: the reasons that servers and their back ends give.
#include "platform/linux/printing/queue_state.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace tellaxis::platform {

namespace {

struct QueueReason {
  std::string_view keyword;
  PrinterState state;
};

/// The first that is given counts. "connecting-to-device" is missing on purpose: every job begins with it.
constexpr QueueReason queueReasons[] = {
    {"cover-open", PrinterState::coverOpen},
    {"door-open", PrinterState::coverOpen},
    {"interlock-open", PrinterState::coverOpen},
    {"media-empty", PrinterState::noPaper},
    {"media-needed", PrinterState::noPaper},
    {"media-jam", PrinterState::error},
    {"input-tray-missing", PrinterState::error},
    {"marker-supply-empty", PrinterState::error},
    {"toner-empty", PrinterState::error},
    {"spool-area-full", PrinterState::error},
    {"cups-missing-filter", PrinterState::error},
    {"offline", PrinterState::offLine},
    {"shutdown", PrinterState::offLine},
    {"timed-out", PrinterState::offLine},
    {"paused", PrinterState::offLine},
    {"media-low", PrinterState::paperLow},
};

constexpr std::string_view severities[] = {"-report", "-warning", "-error"};

/// How severe a reason is does not count: back ends of CUPS call an empty roll a warning, and a printer that is
/// switched off a report.
std::string_view withoutSeverity(std::string_view reason) {
  for (const std::string_view severity : severities)
    if (reason.ends_with(severity)) return reason.substr(0, reason.size() - severity.size());
  return reason;
}

}  // namespace

PrinterState stateFrom(const QueueStatus& status) {
  const auto gives = [&](std::string_view keyword) {
    return std::any_of(status.reasons.begin(), status.reasons.end(),
                       [keyword](std::string_view reason) { return withoutSeverity(reason) == keyword; });
  };
  const auto* const low = std::end(queueReasons) - 1;
  const auto* const no =
      std::find_if(std::begin(queueReasons), low, [&](const auto& row) { return gives(row.keyword); });
  if (no != low) return no->state;
  if (status.stopped || !status.acceptingJobs) return PrinterState::offLine;
  if (std::any_of(status.reasons.begin(), status.reasons.end(),
                  [](std::string_view reason) { return reason.ends_with("-error"); }))
    return PrinterState::error;
  return gives(low->keyword) ? low->state : PrinterState::ready;
}

}  // namespace tellaxis::platform
