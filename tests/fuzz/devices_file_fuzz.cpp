// Devices file fuzzing: any bytes as a devices file and, behind a line of their own, as one that it includes; which are
// understood, or refused in one line that can be shown.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <variant>

#include "platform/devices_file.h"
#include "text/code_page.h"

namespace {

using namespace tellaxis;
using namespace tellaxis::platform;

constexpr std::string_view fileName = "devices.toml";
/// Behind it stands the included file.
constexpr std::string_view border = "\n#---\n";

void demand(bool condition) {
  if (!condition) std::abort();
}

void checkError(const DevicesFileError& error) {
  demand(error.message.find(", riga ") != std::string::npos);
  demand(error.message.find('\n') == std::string::npos);
  demand(isUtf8(error.message));
}

void checkDevices(const DevicesFile& devices, std::string_view text) {
  const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
  for (const PrinterDefinition& definition : devices.printers) {
    demand(!definition.printer.DeviceName.empty() && !definition.printer.Port.empty());
    demand(definition.place.line >= 1 && definition.place.line <= lines);
    if (const auto* network = std::get_if<EscPosNetworkTarget>(&definition.target))
      demand(!network->host.empty() && network->port != 0);
    if (const auto* folder = std::get_if<FolderTarget>(&definition.target)) demand(!folder->folder.empty());
  }
  for (const SerialDefinition& line : devices.serialLines) {
    demand(line.port >= 1 && line.port <= 256 && !line.device.empty());
    demand(std::ranges::count(devices.serialLines, line.port, &SerialDefinition::port) == 1);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::size_t end = text.find(border);
  const auto included = [&](const std::string&) -> std::optional<std::string> {
    if (end == std::string_view::npos) return std::nullopt;
    return std::string(text.substr(end + border.size()));
  };
  const auto parsed = parseDevicesFile(text.substr(0, end), std::string(fileName), included);
  if (const auto* error = std::get_if<DevicesFileError>(&parsed)) {
    checkError(*error);
    return 0;
  }
  checkDevices(std::get<DevicesFile>(parsed), text);
  return 0;
}
