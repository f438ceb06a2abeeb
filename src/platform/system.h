// System: makes the services of the computer that this program was built for.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/bridge_options.h"
#include "platform/host.h"
#include "platform/inspection.h"
#include "platform/job_notices.h"
#include "platform/printing/page_maker.h"

namespace tellaxis::platform {

/// How the services are to behave; texts as the command line gave them.
struct SystemOptions {
  std::string mainFolder;  ///< native path, without a trailing separator
  std::map<char, std::string>
      drives;  ///< upper-case drive letter to native folder, where drives are not the system's own
  std::optional<std::string> devicesFile;  ///< absent: devices.toml of the main folder, where it exists
  std::optional<std::string> localeName;   ///< "it_IT"; absent: the user's own
  bool trace = false;                      ///< print failing steps on standard error
  Trace* alsoTold = nullptr;               ///< who else hears of failing steps
  std::string printInto;  ///< native folder that every printer's documents go into as files; empty: printers print
  PageMakerOpener pagesInto = nullptr;  ///< draws what goes into `printInto`; null: as the system's folder printers do
};

/// Owner of all services.
class System {
 public:
  virtual ~System() = default;
  virtual Host& host() = 0;

  /// What the devices file switches on.
  virtual const BridgeOptions& options() const = 0;

  /// Notices of jobs; `whole` is called from a thread of theirs. The system must outlive them.
  virtual std::unique_ptr<JobNotices> openJobNotices(std::function<void()> whole) = 0;

  /// Looks at this computer. The system must outlive it.
  virtual std::unique_ptr<Inspection> openInspection() = 0;
};

/// Why the services could not be made: one Italian line naming the argument, or the file, line and column.
struct SystemError {
  std::string message;
};

/// Makes the services; touches no file but the devices file.
std::variant<std::unique_ptr<System>, SystemError> openSystem(const SystemOptions& options);

}  // namespace tellaxis::platform
