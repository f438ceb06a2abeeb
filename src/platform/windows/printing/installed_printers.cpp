// Printers of Windows: EnumPrinters, without a question to any print server.
#include "platform/windows/printing/installed_printers.h"

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/windows/kernel/native.h"
#include "platform/windows/printing/gdi_document.h"
#include "platform/windows/printing/printer_ports.h"

namespace tellaxis::platform {

namespace {

std::string text(const wchar_t* wideText) { return narrowForReading(wideText == nullptr ? L"" : wideText); }

/// What EnumPrinters tells at this level (the kind of `Information`) about these kinds of printers.
template <class Information>
std::optional<std::vector<Information>> enumerate(DWORD kinds, DWORD level, std::vector<BYTE>& buffer) {
  DWORD size = 0;
  DWORD count = 0;
  EnumPrintersW(kinds, nullptr, level, nullptr, 0, &size, &count);
  buffer.resize(size);
  if (!EnumPrintersW(kinds, nullptr, level, buffer.data(), size, &size, &count)) return std::nullopt;
  std::vector<Information> entries(count);
  std::memcpy(entries.data(), buffer.data(), count * sizeof(Information));
  return entries;
}

/// Of local printers and connections, from the registry alone: a print server that is switched off does not delay it.
std::optional<std::vector<std::string>> printerNames() {
  std::vector<BYTE> buffer;
  const auto entries = enumerate<PRINTER_INFO_4W>(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS, 4, buffer);
  if (!entries) return std::nullopt;
  std::vector<std::string> names;
  for (const PRINTER_INFO_4W& entry : *entries) names.push_back(text(entry.pPrinterName));
  return names;
}

/// Nothing is asked of the connections here.
std::vector<InstalledPrinter> localPrinters(Trace& trace) {
  std::vector<BYTE> buffer;
  const auto entries = enumerate<PRINTER_INFO_2W>(PRINTER_ENUM_LOCAL, 2, buffer);
  if (!entries) failed(trace, "EnumPrinters", "porte delle stampanti");
  std::vector<InstalledPrinter> printers;
  for (const PRINTER_INFO_2W& entry : entries.value_or(std::vector<PRINTER_INFO_2W>()))
    printers.push_back({text(entry.pPrinterName), text(entry.pPortName)});
  return printers;
}

/// What the user's `Devices` key says of a printer.
std::optional<std::string> userEntry(const std::string& printer) {
  constexpr auto path = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Devices";
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) return std::nullopt;
  wchar_t entry[512] = {};
  DWORD size = sizeof entry - sizeof *entry;
  DWORD kind = 0;
  const LSTATUS status =
      RegQueryValueExW(key, wide(printer).c_str(), nullptr, &kind, reinterpret_cast<BYTE*>(entry), &size);
  RegCloseKey(key);
  if (status != ERROR_SUCCESS || kind != REG_SZ) return std::nullopt;
  return text(entry);
}

std::string defaultPrinter() {
  DWORD size = 0;
  GetDefaultPrinterW(nullptr, &size);
  std::wstring name(size, L'\0');
  if (size == 0 || !GetDefaultPrinterW(name.data(), &size) || size == 0) return {};
  return narrowForReading(name.substr(0, size - 1));
}

struct SpoolerBits {
  DWORD bits;
  PrinterState state;
};

/// The first of which a bit is set counts.
constexpr SpoolerBits spoolerBits[] = {
    {PRINTER_STATUS_DOOR_OPEN, PrinterState::coverOpen},
    {PRINTER_STATUS_PAPER_OUT, PrinterState::noPaper},
    {PRINTER_STATUS_PAPER_JAM | PRINTER_STATUS_PAPER_PROBLEM | PRINTER_STATUS_OUT_OF_MEMORY |
         PRINTER_STATUS_OUTPUT_BIN_FULL | PRINTER_STATUS_NO_TONER | PRINTER_STATUS_USER_INTERVENTION |
         PRINTER_STATUS_ERROR,
     PrinterState::error},
    {PRINTER_STATUS_OFFLINE | PRINTER_STATUS_NOT_AVAILABLE | PRINTER_STATUS_PAUSED | PRINTER_STATUS_SERVER_UNKNOWN,
     PrinterState::offLine},
};

}  // namespace

PrinterState stateOfSpooler(std::uint32_t status, std::uint32_t attributes) {
  for (const SpoolerBits& row : spoolerBits)
    if ((status & row.bits) != 0) return row.state;
  return (attributes & PRINTER_ATTRIBUTE_WORK_OFFLINE) != 0 ? PrinterState::offLine : PrinterState::ready;
}

PrinterState stateOfLocalPrinter(std::string_view deviceName) {
  std::vector<BYTE> buffer;
  const auto entries = enumerate<PRINTER_INFO_2W>(PRINTER_ENUM_LOCAL, 2, buffer);
  for (const PRINTER_INFO_2W& entry : entries.value_or(std::vector<PRINTER_INFO_2W>()))
    if (text(entry.pPrinterName) == deviceName) return stateOfSpooler(entry.Status, entry.Attributes);
  return PrinterState::unknown;
}

std::optional<SystemPrinterList> InstalledPrinters::list() {
  const auto names = printerNames();
  if (!names) {
    failed(trace_, "EnumPrinters", "stampanti");
    return std::nullopt;
  }
  SystemPrinterList list{.printers = withPorts(*names, localPrinters(trace_), userEntry)};
  const auto found = std::ranges::find(list.printers, defaultPrinter(), &InstalledPrinter::DeviceName);
  if (found != list.printers.end()) list.defaultIndex = static_cast<std::size_t>(found - list.printers.begin());
  return list;
}

std::unique_ptr<PrinterBackEnd> InstalledPrinters::backEnd(const InstalledPrinter& printer) {
  return gdiBackEnd(printer, trace_);
}

}  // namespace tellaxis::platform
