// Trial command: a sample job for one device, and what became of it.
#pragma once

#include <string>

#include "app/commands/diary_command.h"
#include "core/activity.h"
#include "platform/bridge_options.h"
#include "platform/host.h"

namespace tellaxis {

/// Puts the device's sample job into its place, waits for the bridge and says what became of it; where there is a
/// diary, in its words. Status 0 where the job was done. `mainFolder` is in code page 1252; `running` says whether a
/// bridge serves it.
CommandResult tryOnce(platform::Host& host, const platform::BridgeOptions& options, const std::string& mainFolder,
                      Device device, bool running);

}  // namespace tellaxis
