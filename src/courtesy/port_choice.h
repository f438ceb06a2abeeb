// Port choice: the courtesy printer is the Windows printer on the configured port.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/bridge.h"
#include "platform/printers.h"

namespace tellaxis {

/// "COM3:" for a port setting of 3, with blanks around it or without; any other text is taken as a number too.
std::string serialPortName(const Bridge& bridge);

/// "COM3:" for a port setting of 3, "LPT1:" for LPT1.
std::string portName(const Bridge& bridge);

enum class Matching : std::uint8_t { exact, ignoringCase };

/// The first installed printer on this port. Where none has exactly this port, one counts whose pool of ports
/// ("COM3:,COM4:") has it, and the colon is of no account.
platform::PrinterSearch findPrinterOnPort(platform::Host& host, std::string_view port, Matching matching);

/// Makes that printer the current one. Where there is none, the current printer stays and nothing is returned.
std::optional<platform::InstalledPrinter> selectPrinterOnPort(platform::Host& host, std::string_view port,
                                                              Matching matching);

}  // namespace tellaxis
