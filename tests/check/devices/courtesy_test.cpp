// Courtesy printer: its type, its printer or its line, its logo and its gate.
#include "check/check_desk.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct CourtesyCheck : CheckDesk {
  std::vector<std::string> problems() { return CheckDesk::problems(Checked::courtesy); }
  void expectError(std::string_view code, std::string_view text) {
    expectFinding(code, Checked::courtesy, Level::error, text);
  }
};

TEST_F(CourtesyCheck, ATypeThatPrintsNothing) {
  for (const char* const type : {"NON PRESENTE", "samsung"}) {
    setting("CORT_Printer", type);
    EXPECT_THAT(problems(), ElementsAre("printer-type-unknown")) << type;
    expectError("printer-type-unknown", type);
  }
}

TEST_F(CourtesyCheck, WithoutItsPrinterASamsungPrintsNothing) {
  setting("CORT_COM", "7");
  EXPECT_THAT(problems(), ElementsAre("printer-missing"));
  expectError("printer-missing", "COM7:");
  expectError("printer-missing", "non si stampa nulla");
  expectError("printer-missing", "SAMSUNG SRP-500 (COM4:)");
}

TEST_F(CourtesyCheck, WithoutItsPrinterALinePrinterPrintsOnAnother) {
  for (const char* const type : {"OLIVETTI PRT100 NonFiscale", "UNIPOS MERIDIA"}) {
    setting("CORT_Printer", type);
    setting("CORT_COM", "LPT2");
    EXPECT_THAT(problems(), ElementsAre("printer-missing")) << type;
    expectError("printer-missing", "LPT2: (CORT_COM): si stampa su EPSON TM-L90 Receipt");
    setting("CORT_COM", "lpt1");
    EXPECT_THAT(problems(), IsEmpty()) << "ports match without regard to case";
  }
}

TEST_F(CourtesyCheck, APrinterThatCannotPrintSaysWhy) {
  using platform::PrinterState;
  const std::pair<PrinterState, std::string_view> rows[] = {{PrinterState::noPaper, "manca la carta"},
                                                            {PrinterState::coverOpen, "il coperchio \xE8 aperto"},
                                                            {PrinterState::offLine, "non \xE8 in linea"},
                                                            {PrinterState::error, "segnala un errore"}};
  for (const auto& [state, why] : rows) {
    computer.Printer.states["SAMSUNG SRP-500"] = state;
    EXPECT_THAT(problems(), ElementsAre("printer-not-ready"));
    expectError("printer-not-ready", "SAMSUNG SRP-500 non pu\xF2 stampare");
    expectError("printer-not-ready", why);
  }
}

TEST_F(CourtesyCheck, ADriverWithoutTheControlFontDoesNotCut) {
  computer.Printer.missingFonts = {{"SAMSUNG SRP-500", "FontControl"}};
  EXPECT_THAT(problems(), ElementsAre("control-font-missing"));
  expectFinding("control-font-missing", Checked::courtesy, Level::warning, "SAMSUNG SRP-500 non ha");
  setting("CORT_Printer", "OLIVETTI PRT100 NonFiscale");
  EXPECT_THAT(problems(), IsEmpty()) << "it has no commands of that kind";
}

TEST_F(CourtesyCheck, APrinterThatStillPrintsOrDoesNotSayIsNoProblem) {
  using platform::PrinterState;
  for (const PrinterState state : {PrinterState::ready, PrinterState::paperLow, PrinterState::unknown}) {
    computer.Printer.states["SAMSUNG SRP-500"] = state;
    EXPECT_THAT(problems(), IsEmpty());
  }
}

TEST_F(CourtesyCheck, TheSerialPrintersLine) {
  setting("CORT_Printer", "DPT-282");
  setting("CORT_COM", "3");
  EXPECT_THAT(problems(), IsEmpty());
  setting("CORT_Sett", "9600");
  EXPECT_THAT(problems(), ElementsAre("port-settings"));
  expectError("port-settings", "CORT_Sett");
  setting("CORT_Sett", "9600,N,8,1");
  inspection.ports[3].access = platform::PortAccess::held;
  EXPECT_THAT(problems(), ElementsAre("port-busy"));
  setting("CORT_COM", "8");
  EXPECT_THAT(problems(), ElementsAre("port-missing"));
}

TEST_F(CourtesyCheck, ALogoThatIsMissingOrNoPicture) {
  computer.Printer.pictures.clear();
  EXPECT_THAT(problems(), ElementsAre("logo-unreadable"));
  expectFinding("logo-unreadable", Checked::courtesy, Level::warning, logo);
  computer.files.erase(logo);
  EXPECT_THAT(problems(), ElementsAre("logo-missing"));
  expectFinding("logo-missing", Checked::courtesy, Level::warning, logo);
  setting("CORT_Logo", "0");
  EXPECT_THAT(problems(), IsEmpty());
}

TEST_F(CourtesyCheck, AClosedGateAndWaitingJobs) {
  computer.files.put("C:\\cassa\\CortOrbis\\a.txt", "");
  inspection.ages = {{"c:\\cassa\\cortorbis\\a.txt", std::chrono::seconds(90)}};
  EXPECT_THAT(problems(), ElementsAre("jobs-waiting"));
  setting("Cort_Vuoto", "0");
  EXPECT_THAT(problems(), ElementsAre("gate-closed"));
  expectFinding("gate-closed", Checked::courtesy, Level::warning,
                "Cort_Vuoto \xE8 0: 1 lavoro aspetta, il primo da 90 secondi");
}

}  // namespace
}  // namespace tellaxis
