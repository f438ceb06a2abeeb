// Event log: failing steps in the system's own log, for whoever looks after many computers.
#pragma once

#include <memory>
#include <string_view>

namespace tellaxis::platform {

/// All in code page 1252.
struct FailedStep {
  std::string_view operation;
  std::string_view subject;
  std::string_view reason;
  std::string_view device;  ///< whose job was under way; empty outside of a job
  std::string_view job;     ///< the job file's bare name; empty outside of a job
};

class EventLog {
 public:
  virtual ~EventLog() = default;
  virtual void write(const FailedStep& step) = 0;
};

/// The log that keeps what goes to standard error; null where that goes elsewhere, as always on Windows.
std::unique_ptr<EventLog> openErrorStreamLog();

/// The log of this computer; null where there is none to write to: on Linux it is the one of standard error.
std::unique_ptr<EventLog> openEventLog();

}  // namespace tellaxis::platform
