// Fiscal printer: its driver, its files, its gate and its waits.
#include "check/check_desk.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct FiscalCheck : CheckDesk {
  std::vector<std::string> problems() { return CheckDesk::problems(Checked::fiscal); }
  void expectError(std::string_view code, std::string_view text) {
    expectFinding(code, Checked::fiscal, Level::error, text);
  }
  void expectWarning(std::string_view code, std::string_view text) {
    expectFinding(code, Checked::fiscal, Level::warning, text);
  }
};

TEST_F(FiscalCheck, AClosedGateTellsHowManyJobsWaitAndSinceWhen) {
  setting("MF_Vuoto", "0");
  expectWarning("gate-closed", "MF_Vuoto \xE8 0: nessun lavoro aspetta");
  computer.files.put("C:\\cassa\\Orbis\\a.txt", "");
  computer.files.put("C:\\cassa\\Orbis\\b.txt", "");
  inspection.ages = {{"c:\\cassa\\orbis\\b.txt", std::chrono::minutes(25)}};
  EXPECT_THAT(problems(), ElementsAre("gate-closed"));
  expectWarning("gate-closed", "2 lavori aspettano, il primo da 25 minuti");
}

TEST_F(FiscalCheck, JobsThatWaitLongerThanTenSeconds) {
  computer.files.put("C:\\cassa\\Orbis\\a.txt", "");
  inspection.ages = {{"c:\\cassa\\orbis\\a.txt", std::chrono::seconds(10)}};
  EXPECT_THAT(problems(), IsEmpty());
  inspection.ages = {{"c:\\cassa\\orbis\\a.txt", std::chrono::seconds(11)}};
  EXPECT_THAT(problems(), ElementsAre("jobs-waiting"));
  expectWarning("jobs-waiting", "1 lavoro aspetta in C:\\cassa\\Orbis, il primo da 11 secondi");
}

TEST_F(FiscalCheck, AnInputFileThatIsNotSet) {
  setting("MF_File", "");
  EXPECT_THAT(problems(), ElementsAre("mf-file-missing"));
  expectError("mf-file-missing", "MF_File");
}

TEST_F(FiscalCheck, AnInputFileWhoseFolderIsMissing) {
  setting("MF_File", "D:\\Casio\\CAS.txt");
  EXPECT_THAT(problems(), ElementsAre("mf-file-folder-missing"));
  expectError("mf-file-folder-missing", "D:\\Casio di MF_File (D:\\Casio\\CAS.txt)");
}

TEST_F(FiscalCheck, AnInputFileWhoseFolderCannotBeWritten) {
  inspection.unwritable = {"c:\\mf"};
  EXPECT_THAT(problems(), ElementsAre("mf-file-folder-not-writable"));
  expectError("mf-file-folder-not-writable", "C:\\MF");
}

TEST_F(FiscalCheck, AMissingDriverSaysWhatWasLookedFor) {
  setting("MF_Driver", "C:\\Program Files\\Driver.exe");
  EXPECT_THAT(problems(), ElementsAre("driver-missing"));
  expectError("driver-missing", "C:\\Program, ");
  expectError("driver-missing", "C:\\Program Files\\Driver.exe");
  setting("MF_Driver", "");
  expectError("driver-missing", "non \xE8 impostato");
}

TEST_F(FiscalCheck, ADriverThatCannotBeStarted) {
  inspection.notExecutable = {"c:\\mf\\driver.exe"};
  EXPECT_THAT(problems(), ElementsAre("driver-not-executable"));
  expectError("driver-not-executable", "C:\\MF\\driver.exe");
}

TEST_F(FiscalCheck, ADriverIsLookedForOnlyWhereTheKindStartsOne) {
  setting("MF_Type", "24 - DITRON ZIP");
  setting("MF_Prot", "CASIO/DITRON - 24");
  setting("MF_Driver", "C:\\nessuno.exe");
  setting("MF_File_Output", "");
  EXPECT_THAT(problems(), IsEmpty());
}

TEST_F(FiscalCheck, AKindThatHandsNothingOver) {
  setting("MF_Prot", "Nessuno");
  EXPECT_THAT(problems(), ElementsAre("driver-kind-unknown"));
  expectError("driver-kind-unknown", "Nessuno");
}

TEST_F(FiscalCheck, AModelAndAKindThatDoNotBelongTogether) {
  setting("MF_Type", "91 - RCH ONDA");
  EXPECT_THAT(problems(), ElementsAre("driver-kind-mismatch"));
  expectWarning("driver-kind-mismatch", "NUCLEO DRIVER - 93");
}

TEST_F(FiscalCheck, AnAnswerFileThatIsNotSet) {
  setting("MF_File_Output", "");
  EXPECT_THAT(problems(), ElementsAre("answer-file-missing"));
  expectError("answer-file-missing", "MF_File_Output");
}

TEST_F(FiscalCheck, TheFolderOfFpMate) {
  setting("MF_Prot", "FPMate - 29");
  EXPECT_THAT(problems(), IsEmpty());
  setting("Orbis_Directory", "C:\\MF");
  EXPECT_THAT(problems(), ElementsAre("fpmate-folder-missing"));
  expectError("fpmate-folder-missing", "C:\\MF\\Epson");
}

TEST_F(FiscalCheck, WaitsThatMaySpanMidnight) {
  options.midnight = false;
  EXPECT_THAT(problems(), ElementsAre("midnight-hang"));
  expectWarning("midnight-hang", "mezzanotte");
  setting("MF_Ritardo", "0");
  EXPECT_THAT(problems(), IsEmpty());
}

TEST_F(FiscalCheck, ALogWhoseFolderIsMissing) {
  setting("MF_ChkLog", "-1");
  EXPECT_THAT(problems(), IsEmpty());
  computer.files.removeFolder("c:\\Tellaxis");
  EXPECT_THAT(problems(), ElementsAre("log-folder-missing"));
  expectWarning("log-folder-missing", "c:\\Tellaxis");
}

}  // namespace
}  // namespace tellaxis
