// Setup: the list of printers and what the choice of one does.
#include "slip/setup.h"

#include "core/bridge.h"
#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using fake::Calls;
using fake::sweepFailingSteps;
using testing::ElementsAre;
using testing::IsEmpty;

struct Desk {
  Desk() {
    setMainFolder(bridge.settings, "C:\\Tellaxis");
    computer.Printer.installed = {{"PDF", "FILE:"}, {"EPSON TM-L90 Receipt", "LPT1:"}, {"PDF", "LPT2:"}};
  }

  fake::Computer computer;
  Bridge bridge{computer.host};

  Calls change(std::string_view text) {
    computer.journal.clear();
    bridge.form.RF_Printer.Text = text;
    RF_Printer_Change(bridge);
    return computer.journal.calls();
  }
};

TEST(RFStartUPValori, ListsTheInstalledPrinters) {
  Desk desk;
  RF_StartUP_Valori(desk.bridge);
  EXPECT_THAT(desk.bridge.form.RF_Printer.List, ElementsAre("PDF", "EPSON TM-L90 Receipt", "PDF"));
}

TEST(RFStartUPValori, ListsEveryPrinterTwiceWhenCalledTwice) {
  Desk desk;
  RF_StartUP_Valori(desk.bridge);
  RF_StartUP_Valori(desk.bridge);
  EXPECT_EQ(desk.bridge.form.RF_Printer.List.size(), 6U);
}

TEST(RFStartUPValori, EndsQuietlyWhereThePrintersCannotBeListed) {
  Desk desk;
  desk.computer.journal.failCall(1);
  RF_StartUP_Valori(desk.bridge);
  EXPECT_THAT(desk.bridge.form.RF_Printer.List, IsEmpty());
}

TEST(RFPrinterChange, ShowsThePortOfAnInstalledPrinterAndSavesNothing) {
  Desk desk;
  EXPECT_THAT(desk.change("EPSON TM-L90 Receipt"), ElementsAre("Printers"));
  EXPECT_EQ(desk.bridge.form.RF_COM.Text, "LPT1:");
  desk.change("PDF");
  EXPECT_EQ(desk.bridge.form.RF_COM.Text, "FILE:");
}

TEST(RFPrinterChange, SavesAnyOtherTextAtOnceWithTheOldPort) {
  Desk desk;
  desk.bridge.form.RF_COM.Text = "LPT1:";
  for (const std::string_view text : {"E", "EPSON TM-L90", "pdf"})
    EXPECT_THAT(
        desk.change(text),
        ElementsAre("Printers", "write [Varie] RF_Stampante=" + std::string(text) + " to C:\\Tellaxis\\_Tellaxis.ini",
                    "write [Varie] RF_Seriale=LPT1: to C:\\Tellaxis\\_Tellaxis.ini"));
  EXPECT_EQ(desk.bridge.form.RF_COM.Text, "LPT1:");
}

TEST(RFPrinterChange, StoresEmptyTextAsItStands) {
  Desk desk;
  desk.computer.profiles.put("C:\\Tellaxis\\_Tellaxis.ini", "Varie", "RF_Stampante", "PDF");
  desk.change("");
  EXPECT_EQ(desk.computer.profiles.value("C:\\Tellaxis\\_Tellaxis.ini", "Varie", "RF_Stampante"), "");
}

TEST(RFPrinterChange, LooksAtNoWriteAndEndsWhereThePrintersCannotBeListed) {
  sweepFailingSteps(
      [](std::size_t failingCall) {
        Desk desk;
        desk.computer.journal.failCall(failingCall);
        desk.bridge.form.RF_Printer.Text = "altra";
        RF_Printer_Change(desk.bridge);
        return desk.computer.journal.calls();
      },
      {{.call = "Printers", .dropped = 2}});
}

}  // namespace
}  // namespace tellaxis
