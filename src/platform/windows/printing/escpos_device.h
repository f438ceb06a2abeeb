// ESC/POS device: bytes into a COM or LPT port, a file, or a printer on the network.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/printing/escpos_printer.h"
#include "platform/serial/line_settings.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// A port by its name ("COM3", "LPT1") or an existing file at a native path (UTF-8), opened for each document. A port
/// that takes no byte for 10 s counts as failed. A COM line gets these settings each time, or keeps its own without
/// them.
std::unique_ptr<ByteChannel> openDeviceChannel(const std::string& path, Trace& trace,
                                               const std::optional<LineSettings>& line = std::nullopt);

/// A printer that takes bytes on a TCP port, connected to for each document within 2 s. One that breaks the connection
/// off before it has all bytes, or right after, has failed.
std::unique_ptr<ByteChannel> openNetworkChannel(const std::string& host, std::uint16_t port, Trace& trace);

/// True for the name of a COM or LPT port.
bool isPortName(const std::string& path);

}  // namespace tellaxis::platform
