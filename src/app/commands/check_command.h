// Check command: what is wrong with the installation, said on the command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "app/commands/diary_command.h"
#include "platform/bridge_options.h"
#include "platform/host.h"
#include "platform/inspection.h"

namespace tellaxis {

/// What `controlla` is asked.
struct CheckOptions {
  bool json = false;
  bool network = false;  ///< servers are asked too
};

/// The findings for a reader or as JSON; status 1 where there is an error among them. `mainFolder` is in code page
/// 1252, `serving` the number of the process that serves it, 0 where it is unknown.
CommandResult showCheck(platform::Host& host, platform::Inspection& inspection, const platform::BridgeOptions& options,
                        const std::string& mainFolder, std::optional<std::uint32_t> serving, CheckOptions request);

}  // namespace tellaxis
