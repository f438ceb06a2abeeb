// ESC/POS device: bytes into a device node or a printer on the network.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/printing/escpos_printer.h"
#include "platform/serial/line_settings.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// How long a printer may take no byte before it counts as failed.
inline constexpr std::chrono::milliseconds printerTimeout{10'000};

/// The device node at a native path, opened for each document; a serial line gets these settings each time, or keeps
/// its own without them. The signal for a broken pipe must be ignored.
std::unique_ptr<ByteChannel> openDeviceChannel(std::string path, Trace& trace,
                                               std::chrono::milliseconds timeout = printerTimeout,
                                               const std::optional<LineSettings>& line = std::nullopt);

/// A printer that takes bytes on a TCP port, connected to for each document, within two seconds. The document is handed
/// over when the printer's side has acknowledged all of it and has not broken the connection off: its end is waited
/// for, one second at most, since some printers keep the connection open.
std::unique_ptr<ByteChannel> openNetworkChannel(const std::string& host, std::uint16_t port, Trace& trace,
                                                std::chrono::milliseconds timeout = printerTimeout);

}  // namespace tellaxis::platform
