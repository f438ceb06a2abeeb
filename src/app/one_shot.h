// One-shot: single operations that something outside calls for, beside a copy that stays or without one.
#pragma once

#include <optional>
#include <string>

#include "app/command_line.h"
#include "platform/clock.h"
#include "platform/host.h"

namespace tellaxis {

/// Carries out the FTP transfer that the settings file asks for; true when it succeeded. `mainFolder` is in code page
/// 1252, here and below.
bool transferOnce(platform::Host& host, const std::string& mainFolder);

/// Runs the operations that are due in this minute, or in the minute `now`, as a station of this role ("SERVER" or
/// "CLIENT").
void runScheduledOnce(platform::Host& host, const std::string& mainFolder, const std::string& stationRole,
                      const std::optional<platform::DateTime>& now);

/// Carries out the command of `line`, which is one operation, and returns the program's status.
int runOnce(platform::Host& host, const CommandLine& line, const std::string& mainFolder);

}  // namespace tellaxis
