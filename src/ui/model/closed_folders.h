// Closed folders: those that the bridge has to write into and may not, as the window says it.
#pragma once

#include <string>

#include "core/settings.h"
#include "platform/inspection.h"

namespace tellaxis::ui {

/// A sentence in code page 1252 with the main folder and the folders of the fiscal driver's input and answer, as far as
/// they are there and closed to this user; empty where none is. A folder that is missing is not told of: it may still
/// come.
std::string closedFolders(const Settings& settings, platform::Inspection& inspection);

}  // namespace tellaxis::ui
