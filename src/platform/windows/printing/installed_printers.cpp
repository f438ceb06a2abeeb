// Printers of Windows: EnumPrinters with ports.
#include "platform/windows/printing/installed_printers.h"

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <algorithm>
#include <span>

#include "platform/windows/kernel/native.h"
#include "platform/windows/printing/gdi_document.h"

namespace tellaxis::platform {

namespace {

constexpr DWORD kinds = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;
constexpr DWORD withPorts = 2;

std::string defaultPrinter() {
  DWORD size = 0;
  GetDefaultPrinterW(nullptr, &size);
  std::wstring name(size, L'\0');
  if (size == 0 || !GetDefaultPrinterW(name.data(), &size) || size == 0) return {};
  return narrowForReading(name.substr(0, size - 1));
}

}  // namespace

std::optional<std::vector<InstalledPrinter>> InstalledPrinters::list() {
  DWORD size = 0;
  DWORD count = 0;
  EnumPrintersW(kinds, nullptr, withPorts, nullptr, 0, &size, &count);
  std::vector<PRINTER_INFO_2W> buffer(size / sizeof(PRINTER_INFO_2W) + 1);
  if (!EnumPrintersW(kinds, nullptr, withPorts, reinterpret_cast<BYTE*>(buffer.data()), size, &size, &count)) {
    failed(trace_, "EnumPrinters", "stampanti");
    return std::nullopt;
  }
  std::vector<InstalledPrinter> printers;
  for (const PRINTER_INFO_2W& information : std::span(buffer.data(), count)) {
    const auto text = [](const wchar_t* wideText) { return narrowForReading(wideText == nullptr ? L"" : wideText); };
    printers.push_back({text(information.pPrinterName), text(information.pPortName)});
  }
  const std::string first = defaultPrinter();
  std::ranges::stable_partition(printers, [&](const InstalledPrinter& printer) { return printer.DeviceName == first; });
  return printers;
}

std::unique_ptr<PrinterBackEnd> InstalledPrinters::backEnd(const InstalledPrinter& printer) {
  return gdiBackEnd(printer.DeviceName, trace_);
}

}  // namespace tellaxis::platform
