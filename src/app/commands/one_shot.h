// One-shot: single operations that something outside calls for, beside a copy that stays or without one.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/command_line.h"
#include "app/commands/diary_command.h"
#include "platform/bridge_options.h"
#include "platform/clock.h"
#include "platform/host.h"
#include "platform/system.h"

namespace tellaxis {

/// Carries out the FTP transfer that the settings file asks for; true when it succeeded. `mainFolder` is in code page
/// 1252, here and below.
bool transferOnce(platform::Host& host, const std::string& mainFolder);

/// The role that `pianificate` takes: the one that was `asked` for, else that of the devices file, else CLIENT.
std::string stationRoleFrom(const std::string& asked, const platform::BridgeOptions& options);

/// Runs the operations that are due in this minute, or in the minute `now`, as a station of this role ("SERVER" or
/// "CLIENT").
void runScheduledOnce(platform::Host& host, const std::string& mainFolder, const std::string& stationRole,
                      const std::optional<platform::DateTime>& now);

/// How a program shows what a command says, in UTF-8: on standard output with status 0 or where it is a report, as a
/// complaint else.
using Say = std::function<void(const CommandResult& result)>;

/// Carries out the command of `line`, which is one operation, and returns the program's status.
int runOnce(platform::System& system, const CommandLine& line, const std::string& mainFolder, const Say& say);

}  // namespace tellaxis
