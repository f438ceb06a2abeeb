// Event log: none yet.
#include "platform/event_log.h"

namespace tellaxis::platform {

std::unique_ptr<EventLog> openErrorStreamLog() { return nullptr; }

std::unique_ptr<EventLog> openEventLog() { return nullptr; }

}  // namespace tellaxis::platform
