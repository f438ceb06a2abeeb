// Log: one dated line a message.
#pragma once

#include <string_view>

#include "platform/host.h"

namespace tellaxis {

/// Appends "dd/mm/yyyy hh:nn - message" and CR LF to `logFile`, creating it where it is missing; a missing folder loses
/// the line.
void ScriviLog(platform::Host& host, std::string_view logFile, std::string_view message);

}  // namespace tellaxis
