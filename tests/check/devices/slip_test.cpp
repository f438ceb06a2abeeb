// Slip printer: its layout, its printer and its file.
#include "check/check_desk.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;

struct SlipCheck : CheckDesk {
  std::vector<std::string> problems() { return CheckDesk::problems(Checked::slip); }
  void expectError(std::string_view code, std::string_view text) {
    expectFinding(code, Checked::slip, Level::error, text);
  }
};

TEST_F(SlipCheck, APrinterWithoutALayoutPrintsNothing) {
  computer.Printer.installed.push_back({"Laser", "USB001"});
  setting("RF_Stampante", "Laser");
  EXPECT_THAT(problems(), ElementsAre("layout-unknown"));
  expectError("layout-unknown", "\"Laser\"");
}

TEST_F(SlipCheck, AMissingPrinterSaysWhichOnePrintsInsteadAndWhatThereIs) {
  setting("RF_Stampante", "EPSON TM-U295 Slip");
  EXPECT_THAT(problems(), ElementsAre("printer-missing"));
  expectError("printer-missing", "\"EPSON TM-U295 Slip\"");
  expectError("printer-missing", "si stampa su EPSON TM-L90 Receipt");
  expectError("printer-missing", "EPSON TM-L90 Receipt (LPT1:), SAMSUNG SRP-500 (COM4:)");
}

TEST_F(SlipCheck, APrinterThatCannotPrintSaysWhy) {
  computer.Printer.states["EPSON TM-L90 Receipt"] = platform::PrinterState::noPaper;
  EXPECT_THAT(problems(), ElementsAre("printer-not-ready"));
  expectError("printer-not-ready", "EPSON TM-L90 Receipt non pu\xF2 stampare: manca la carta");
}

TEST_F(SlipCheck, WithoutAnyPrinterNothingIsPrinted) {
  computer.Printer.installed.clear();
  expectError("printer-missing", "non si stampa nulla. Non c'\xE8 nessuna stampante");
}

TEST_F(SlipCheck, APortOfNoneKeepsTheSlipsFromBeingPrinted) {
  setting("RF_Seriale", "0");
  EXPECT_THAT(problems(), ElementsAre("port-missing"));
  expectError("port-missing", "RF_Seriale");
}

TEST_F(SlipCheck, AFileWhoseFolderIsMissingOrThatIsNotSet) {
  setting("RF_File", "D:\\altrove\\ricevuta.txt");
  EXPECT_THAT(problems(), ElementsAre("slip-file-folder-missing"));
  expectError("slip-file-folder-missing", "D:\\altrove");
  setting("RF_File", "");
  expectError("slip-file-folder-missing", "non \xE8 impostato");
}

TEST_F(SlipCheck, AFileThatNobodyTakes) {
  computer.files.put("C:\\RF\\ricevuta.txt", "");
  inspection.ages = {{"c:\\rf\\ricevuta.txt", std::chrono::hours(49)}};
  EXPECT_THAT(problems(), ElementsAre("jobs-waiting"));
  expectFinding("jobs-waiting", Checked::slip, Level::warning, "aspetta da 2 giorni");
}

}  // namespace
}  // namespace tellaxis
