// Tests of the list of printers of a Windows computer: ports without a question to print servers, ports that ask.
#include <gmock/gmock.h>
#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <map>
#include <utility>

#include "platform/trace_log.h"
#include "platform/windows/printing/device_face.h"
#include "platform/windows/printing/installed_printers.h"
#include "platform/windows/printing/printer_ports.h"

namespace tellaxis::platform {
namespace {

using testing::ElementsAre;

TEST(WindowsPrinterPorts, AConnectionHasThePortOfTheUsersEntryAndNeverThatOfItsServer) {
  const std::map<std::string, std::string> entries = {{"\\\\server\\cassa", "winspool,Ne02:"},
                                                      {"scontrini", "winspool,LPT9:"}};
  const auto entryOf = [&](const std::string& name) -> std::optional<std::string> {
    const auto found = entries.find(name);
    return found == entries.end() ? std::nullopt : std::optional(found->second);
  };
  std::vector<std::string> printers;
  for (const auto& printer :
       withPorts({"\\\\server\\cassa", "scontrini", "\\\\server\\senza"}, {{"scontrini", "COM3:"}}, entryOf))
    printers.push_back(printer.DeviceName + " " + printer.Port);
  EXPECT_THAT(printers, ElementsAre("\\\\server\\cassa Ne02:", "scontrini COM3:", "\\\\server\\senza "));
}

TEST(WindowsPrinterPorts, AnEntryNamesThePortAfterTheSpooler) {
  EXPECT_EQ(portOfDevicesEntry("winspool,Ne00:"), "Ne00:");
  EXPECT_EQ(portOfDevicesEntry("winspool,COM3:,COM4:"), "COM3:,COM4:");
  EXPECT_EQ(portOfDevicesEntry("winspool"), "");
  EXPECT_EQ(portOfDevicesEntry(""), "");
}

TEST(WindowsPrinterPorts, PortsThatAskForAFileAreKnownAloneAndInAPool) {
  for (const char* port : {"FILE:", "file:", "PORTPROMPT:", "XPSPort:", "SHRFAX:", "COM3:,FILE:"})
    EXPECT_TRUE(asksForAnswer(port)) << port;
  for (const char* port : {"COM3:", "LPT1:", "USB001", "FILE", "nul:", "", "C:\\FILE:x"})
    EXPECT_FALSE(asksForAnswer(port)) << port;
}

LOGFONTW fontOf(BYTE characterSet, LONG height) {
  LOGFONTW font = {};
  font.lfCharSet = characterSet;
  font.lfHeight = height;
  return font;
}

TEST(WindowsDeviceFace, TheDevicesOwnFontInTheWesternCharacterSetIsTakenWhereverItStands) {
  const struct {
    LOGFONTW font;
    DWORD type;
  } offered[] = {{fontOf(GREEK_CHARSET, 1), TRUETYPE_FONTTYPE},
                 {fontOf(OEM_CHARSET, 2), DEVICE_FONTTYPE},
                 {fontOf(ANSI_CHARSET, 3), TRUETYPE_FONTTYPE},
                 {fontOf(ANSI_CHARSET, 4), DEVICE_FONTTYPE}};
  Face face;
  int goesOn = 1;
  for (const auto& [font, type] : offered)
    if (goesOn != 0) goesOn = takeFace(&font, nullptr, type, reinterpret_cast<LPARAM>(&face));
  EXPECT_EQ(goesOn, 0);
  EXPECT_TRUE(face.ofDevice);
  EXPECT_EQ(face.description.lfHeight, 4);
}

TEST(WindowsDeviceFace, AFontOfTheDeviceInAnotherCharacterSetComesBeforeOneThatIsNot) {
  Face face;
  const LOGFONTW symbols = fontOf(SYMBOL_CHARSET, 1);
  const LOGFONTW western = fontOf(ANSI_CHARSET, 2);
  takeFace(&symbols, nullptr, DEVICE_FONTTYPE, reinterpret_cast<LPARAM>(&face));
  takeFace(&western, nullptr, TRUETYPE_FONTTYPE, reinterpret_cast<LPARAM>(&face));
  EXPECT_TRUE(face.ofDevice);
  EXPECT_EQ(face.description.lfHeight, 1);
}

TEST(WindowsPrinterState, EveryBitOfTheSpoolerThatMattersIsAState) {
  const std::pair<DWORD, PrinterState> rows[] = {
      {0, PrinterState::ready},
      {PRINTER_STATUS_PRINTING | PRINTER_STATUS_BUSY, PrinterState::ready},
      {PRINTER_STATUS_TONER_LOW, PrinterState::ready},
      {PRINTER_STATUS_DOOR_OPEN, PrinterState::coverOpen},
      {PRINTER_STATUS_PAPER_OUT, PrinterState::noPaper},
      {PRINTER_STATUS_PAPER_JAM, PrinterState::error},
      {PRINTER_STATUS_PAPER_PROBLEM, PrinterState::error},
      {PRINTER_STATUS_OUT_OF_MEMORY, PrinterState::error},
      {PRINTER_STATUS_OUTPUT_BIN_FULL, PrinterState::error},
      {PRINTER_STATUS_NO_TONER, PrinterState::error},
      {PRINTER_STATUS_USER_INTERVENTION, PrinterState::error},
      {PRINTER_STATUS_ERROR, PrinterState::error},
      {PRINTER_STATUS_OFFLINE, PrinterState::offLine},
      {PRINTER_STATUS_NOT_AVAILABLE, PrinterState::offLine},
      {PRINTER_STATUS_PAUSED, PrinterState::offLine},
      {PRINTER_STATUS_SERVER_UNKNOWN, PrinterState::offLine},
  };
  for (const auto& [status, state] : rows) EXPECT_EQ(stateOfSpooler(status, 0), state) << status;
}

TEST(WindowsPrinterState, TheCauseCountsBeforeItsConsequencesAndAPrinterMayBeSetOffLine) {
  EXPECT_EQ(stateOfSpooler(PRINTER_STATUS_ERROR | PRINTER_STATUS_PAPER_OUT | PRINTER_STATUS_OFFLINE, 0),
            PrinterState::noPaper);
  EXPECT_EQ(stateOfSpooler(0, PRINTER_ATTRIBUTE_WORK_OFFLINE), PrinterState::offLine);
  EXPECT_EQ(stateOfSpooler(PRINTER_STATUS_PAPER_OUT, PRINTER_ATTRIBUTE_WORK_OFFLINE), PrinterState::noPaper);
}

TEST(WindowsPrinterState, OfAPrinterThatIsNotThereNothingIsKnown) {
  EXPECT_EQ(stateOfLocalPrinter("nessuna stampante"), PrinterState::unknown);
}

TEST(WindowsPrinters, APrinterThatAsksForAFileIsRefusedWithAReason) {
  test::TraceLog trace;
  InstalledPrinters printers(trace);
  for (const char* port : {"PORTPROMPT:", "FILE:"})
    EXPECT_EQ(printers.backEnd({"Stampa su PDF", port})->open(), nullptr);
  EXPECT_THAT(
      trace.lines,
      ElementsAre("StartDoc | Stampa su PDF | la porta PORTPROMPT: chiede il nome di un file per ogni documento",
                  "StartDoc | Stampa su PDF | la porta FILE: chiede il nome di un file per ogni documento"));
}

}  // namespace
}  // namespace tellaxis::platform
