// Add printer: makes a printer under Wine, from the command line: its name, its port, the description of its device (a
// Windows path) and the names of the fonts that the device has itself. It becomes the default printer.
#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <cstdio>
#include <string>

namespace {

bool addDriver(char* name, char* description) {
  char driver[] = "wineps.drv";
  char environment[] = "Windows NT x86";
  char dataType[] = "RAW";
  DRIVER_INFO_3A information = {};
  information.cVersion = 3;
  information.pName = name;
  information.pEnvironment = environment;
  information.pDriverPath = driver;
  information.pConfigFile = driver;
  information.pDataFile = description;
  information.pDefaultDataType = dataType;
  return AddPrinterDriverExA(nullptr, 3, reinterpret_cast<BYTE*>(&information),
                             APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY) != 0;
}

HANDLE addPrinter(char* name, char* port) {
  char processor[] = "WinPrint";
  char dataType[] = "RAW";
  char nothing[] = "";
  PRINTER_INFO_2A information = {};
  information.pPrinterName = name;
  information.pPortName = port;
  information.pDriverName = name;
  information.pPrintProcessor = processor;
  information.pDatatype = dataType;
  information.pLocation = information.pComment = information.pShareName = nothing;
  information.pParameters = information.pSepFile = nothing;
  return AddPrinterA(nullptr, 2, reinterpret_cast<BYTE*>(&information));
}

}  // namespace

int main(int count, char** words) {
  if (count < 4) return 2;
  if (!addDriver(words[1], words[3])) {
    std::fprintf(stderr, "AddPrinterDriverEx: %lu\n", GetLastError());
    return 1;
  }
  const HANDLE printer = addPrinter(words[1], words[2]);
  if (printer == nullptr) {
    std::fprintf(stderr, "AddPrinter: %lu\n", GetLastError());
    return 1;
  }
  // Without an entry here Wine's driver takes another font in the place of the device's own.
  for (int i = 4; i < count; ++i) {
    std::string font = words[i];
    SetPrinterDataExA(printer, "PrinterDriverData\\FontSubTable", font.c_str(), REG_SZ,
                      reinterpret_cast<BYTE*>(font.data()), static_cast<DWORD>(font.size()) + 1);
  }
  return SetDefaultPrinterA(words[1]) ? 0 : 1;
}
