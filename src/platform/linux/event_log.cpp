// Event log: the journal, where standard error leads there.
#include "platform/event_log.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <string>

#include "platform/console/error_line.h"
#include "platform/console/trace.h"
#include "platform/linux/kernel/loaded_library.h"
#include "platform/linux/systemd/systemd_library.h"
#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

class Journal : public EventLog {
 public:
  explicit Journal(const SystemdLibrary& library) : library_(library) {}

  void write(const FailedStep& step) override {
    const std::string line = lineOf(step.operation, step.subject, step.reason);
    const std::array fields = {
        field("MESSAGE", line),
        std::string("PRIORITY=4"),
        std::string("SYSLOG_IDENTIFIER=") + program_invocation_short_name,
        field("TELLAXIS_OPERATION", step.operation),
        field("TELLAXIS_SUBJECT", step.subject),
        field("TELLAXIS_DEVICE", step.device),
        field("TELLAXIS_JOB", step.job),
    };
    // The last two are there for a job alone.
    const std::size_t count = step.device.empty() ? fields.size() - 2 : fields.size();
    std::array<std::string_view, fields.size()> views;
    std::copy(fields.begin(), fields.end(), views.begin());
    if (!library_.journal({views.data(), count})) writeErrorLine(line);
  }

 private:
  static std::string field(const char* name, std::string_view value) {
    return std::string(name) + "=" + utf8FromCodePage(oneLineOf(value));
  }

  const SystemdLibrary& library_;
};

/// Whether standard error is the stream that systemd made for the journal and named in the environment: a program that
/// has turned it elsewhere hands that name on all the same.
bool errorsGoToJournal() {
  const char* const named = std::getenv("JOURNAL_STREAM");
  struct stat stream {};
  if (named == nullptr || ::fstat(STDERR_FILENO, &stream) != 0) return false;
  return named == std::to_string(stream.st_dev) + ":" + std::to_string(stream.st_ino);
}

}  // namespace

std::unique_ptr<EventLog> openErrorStreamLog() {
  if (!errorsGoToJournal()) return nullptr;
  ErrorTrace trace;
  const auto* library = loadedLibrary<SystemdLibrary>(systemdLibraryFile, systemdLibraryEntry, trace);
  return library == nullptr ? nullptr : std::make_unique<Journal>(*library);
}

std::unique_ptr<EventLog> openEventLog() { return openErrorStreamLog(); }

}  // namespace tellaxis::platform
