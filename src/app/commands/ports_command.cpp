// Ports command: columns of text.
#include "app/commands/ports_command.h"

#include <algorithm>

#include "platform/printers.h"
#include "platform/serial_port.h"
#include "text/code_page.h"
#include "text/overloaded.h"

namespace tellaxis {

namespace {

#ifdef _WIN32
constexpr std::string_view systemPrinters = "Windows";
#else
constexpr std::string_view systemPrinters = "CUPS";
#endif

using Row = std::vector<std::string>;  // code page 1252

std::string columns(const std::vector<Row>& rows) {
  std::vector<std::size_t> widths;
  for (const Row& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  std::string text;
  for (const Row& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i)
      line.append("  ").append(row[i]).append(widths[i] - row[i].size(), ' ');
    text.append(line, 0, line.find_last_not_of(' ') + 1).append("\n");
  }
  return text.empty() ? "  nessuna\n" : text;
}

std::string useOf(const platform::PortLook& port) {
  switch (port.access) {
    case platform::PortAccess::missing: return "non collegata";
    case platform::PortAccess::refused: return "questo utente non la pu\xF2 aprire";
    case platform::PortAccess::held: return "in uso da " + (port.heldBy.empty() ? "un altro programma" : port.heldBy);
    case platform::PortAccess::free: break;
  }
  return {};
}

std::vector<Row> serialLines(platform::Host& host, platform::Inspection& inspection) {
  std::vector<Row> rows;
  for (const platform::SerialPortInfo& port : host.serialPorts.list()) {
    const bool numbered = port.number > 0;
    const std::string heldBy = port.heldBy.empty() ? std::string() : "in uso da " + port.heldBy;
    rows.push_back({numbered ? "COM" + std::to_string(port.number) : "-", port.device, port.description,
                    numbered ? useOf(inspection.port(port.number, false)) : heldBy});
  }
  return rows;
}

/// As the devices file writes it.
std::string targetText(const platform::PrinterTarget& target) {
  return std::visit(Overloaded{[](const platform::FolderTarget& folder) { return "folder:" + folder.folder; },
                               [](const platform::QueueTarget& queue) { return "cups:" + queue.queue; },
                               [](const platform::EscPosDeviceTarget& device) { return "escpos:" + device.device; },
                               [](const platform::EscPosNetworkTarget& network) {
                                 return "escpos:tcp://" + network.host + ":" + std::to_string(network.port);
                               },
                               [](const platform::EscPosQueueTarget& queue) { return "escpos:cups:" + queue.queue; }},
                    target);
}

std::vector<Row> printers(platform::Host& host, const std::vector<platform::PrinterDefinition>& listed) {
  std::vector<Row> rows;
  for (const platform::InstalledPrinter& printer :
       host.Printer.Printers().value_or(std::vector<platform::InstalledPrinter>())) {
    // Those of the devices file come first.
    const std::size_t place = rows.size();
    const std::string behind =
        place < listed.size() ? nearestCodePage(targetText(listed[place].target)) : std::string(systemPrinters);
    const auto& state = platform::wordsOf(host.Printer.state(printer.DeviceName));
    rows.push_back({printer.DeviceName, printer.Port, behind, std::string(state.italian)});
  }
  return rows;
}

}  // namespace

CommandResult showPorts(platform::Host& host, platform::Inspection& inspection,
                        const std::vector<platform::PrinterDefinition>& listed) {
  return {.text = utf8FromCodePage("Porte seriali:\n" + columns(serialLines(host, inspection)) + "\nStampanti:\n" +
                                   columns(printers(host, listed)))};
}

}  // namespace tellaxis
