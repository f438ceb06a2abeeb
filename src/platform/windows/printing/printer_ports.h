// Printer ports: where a printer's documents go, without asking a print server that may be switched off.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/printers.h"

namespace tellaxis::platform {

/// The port of an entry of the user's `Devices` key: "Ne00:" of "winspool,Ne00:"; a pool's ports stay together.
std::string portOfDevicesEntry(std::string_view entry);

/// Every printer of `names`, in their order, with its port: that of the local printer of this name, or else that of the
/// user's own entry for it. A connection's port on its server is no port of this computer and never counts.
std::vector<InstalledPrinter> withPorts(const std::vector<std::string>& names,
                                        const std::vector<InstalledPrinter>& localPrinters,
                                        const std::function<std::optional<std::string>(const std::string&)>& entryOf);

/// True for a port that opens a dialog for each document (a file's name, a fax number) and waits until somebody
/// answers.
bool asksForAnswer(std::string_view port);

}  // namespace tellaxis::platform
