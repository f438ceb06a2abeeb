// Ports command: the serial lines and printers of this computer, as the settings can name them.
#pragma once

#include <string>
#include <vector>

#include "app/commands/diary_command.h"
#include "platform/devices_file.h"
#include "platform/host.h"
#include "platform/inspection.h"

namespace tellaxis {

/// Every line with what is plugged into it and who has it open, every printer with its port, what is behind it and what
/// it says of itself. `listed` are those of the devices file. No line is opened.
CommandResult showPorts(platform::Host& host, platform::Inspection& inspection,
                        const std::vector<platform::PrinterDefinition>& listed);

}  // namespace tellaxis
