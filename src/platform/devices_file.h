// Devices file: the printers and serial lines that the user lists, with what stands behind each, and the options.
//
// A desk's file may begin with `include = "comune.toml"`, a path relative to its own folder: what many desks share then
// stands in that file. The desk's own keys win. [bridge] is both tables key by key; so is a [[printer]] with the common
// one of the same name and a [[serial]] with that of the same port. The desk's come first, in the order of its file,
// then the common ones that it has not. An included file includes none.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/bridge_options.h"
#include "platform/printers.h"
#include "platform/serial/line_settings.h"

namespace tellaxis::platform {

/// Where in a text file something stands; line and column count from 1.
struct TextPlace {
  std::string file;
  unsigned line = 1;
  unsigned column = 1;
};

/// "folder:DIR": documents become files. The path is native, in UTF-8, and may be relative to the main folder.
struct FolderTarget {
  std::string folder;
};

/// "cups:QUEUE": documents become page jobs of that queue.
struct QueueTarget {
  std::string queue;
};

/// "escpos:DEVICE": receipt-printer commands, written to a device. Paths as for folders. Settings of a serial line may
/// follow, "escpos:COM3:9600,N,8,1"; with ",CTS" behind them the printer may hold our bytes back by that line. Without
/// settings the line keeps those it has.
struct EscPosDeviceTarget {
  std::string device;
  std::optional<LineSettings> line;
};

/// "escpos:tcp://HOST:PORT".
struct EscPosNetworkTarget {
  std::string host;
  std::uint16_t port = 0;
};

/// "escpos:cups:QUEUE": receipt-printer commands as raw jobs of that queue.
struct EscPosQueueTarget {
  std::string queue;
};

using PrinterTarget =
    std::variant<FolderTarget, QueueTarget, EscPosDeviceTarget, EscPosNetworkTarget, EscPosQueueTarget>;

/// A `[[printer]]`; name and port in code page 1252.
struct PrinterDefinition {
  InstalledPrinter printer;
  PrinterTarget target;
  TextPlace place;  ///< of the target
};

/// A `[[serial]]`: where COM `port` is; the device's path in UTF-8.
struct SerialDefinition {
  int port = 0;
  std::string device;
};

struct DevicesFile {
  std::vector<PrinterDefinition> printers;
  std::vector<SerialDefinition> serialLines;
  BridgeOptions options;
};

/// One Italian line, in UTF-8, that names the file and where it matters the line and column.
struct DevicesFileError {
  std::string message;
};

/// Reads the devices file at the native path `file` (UTF-8).
std::variant<DevicesFile, DevicesFileError> readDevicesFile(const std::string& file);

/// The devices file `named`, or without one that of `mainFolder` where it is there; native paths, in UTF-8. Nothing:
/// there is none.
std::optional<std::string> devicesFileOf(const std::optional<std::string>& named, const std::string& mainFolder);

/// The text of a native file (UTF-8); nothing where it cannot be read.
using DevicesTextReader = std::function<std::optional<std::string>(const std::string& file)>;

/// The same for the file's text; what it includes comes from `read`.
std::variant<DevicesFile, DevicesFileError> parseDevicesFile(std::string_view text, const std::string& file,
                                                             const DevicesTextReader& read);

/// The same for the file's text; what it includes is read from disk.
std::variant<DevicesFile, DevicesFileError> parseDevicesFile(std::string_view text, const std::string& file);

/// The message for something at `place` that cannot be used.
DevicesFileError devicesFileError(const TextPlace& place, std::string_view reason);

/// The devices where each of `printers` is listed and its documents become files in `folder` (native, UTF-8).
DevicesFile printingInto(DevicesFile devices, const std::vector<InstalledPrinter>& printers, const std::string& folder);

/// `path` as it is where it is absolute, else under `mainFolder`; all native, in UTF-8.
std::string underMainFolder(const std::string& path, const std::string& mainFolder);

}  // namespace tellaxis::platform
