// Test print: checks before it, rows, messages and failures.
#include "slip/test_print.h"

#include "core/step_failed.h"
#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using fake::Calls;
using fake::sweepLeavingSteps;
using testing::ElementsAre;

const std::string notSetUp =
    "message Tellaxis: Nella schermata principale non sono stati impostati correttamtente\r\n"
    "i parametri relativi alla Epson TM-U295.";
const std::string noNumbers = "message Tellaxis: Impostare numero righe e numero colonne.";
const std::string result =
    "message Risultato TEST: Al termine della stampa\r\n"
    "Controllare il numero delle righe stampate\r\n"
    "e dei caratteri per riga\r\n"
    "e utilizzare le informazioni acquisite per impostare i valori in Tellaxis e Orbis51";
const std::string ruler = "A234567890123456789012345678901234567890123456789012345678901234567890";

struct Desk {
  Desk() {
    computer.Printer.installed = {{"PDF", "FILE:"}, {"EPSON TM-U295 Slip", "LPT1:"}};
    bridge.settings.RF_Stampante = "EPSON TM-U295 Slip";
    bridge.settings.RF_Seriale = std::string("LPT1:");
  }

  fake::Computer computer;
  Bridge bridge{computer.host};

  const Calls& test(std::string_view rows, std::string_view columns) {
    cmdTest_Click(bridge, {.testRow = {std::string(rows)}, .testChar = {std::string(columns)}});
    return computer.journal.calls();
  }
  Calls printed(std::string_view rows, std::string_view columns) {
    test(rows, columns);
    return computer.journal.callsThatBegin("Print ");
  }
};

TEST(CmdTest, PrintsTheRulerAndNumberedRows) {
  Desk desk;
  EXPECT_THAT(desk.test("3", "12"),
              ElementsAre("Printers", "select 1", "Print A23456789012", "Print R02", "Print R03", "EndDoc", result));
}

TEST(CmdTest, NumbersRowsWithAtLeastTwoDigits) {
  const Calls rows = Desk().printed("100", "5");
  ASSERT_EQ(rows.size(), 100U);
  EXPECT_EQ(rows[8], "Print R09");
  EXPECT_EQ(rows[9], "Print R10");
  EXPECT_EQ(rows[99], "Print R100");
}

TEST(CmdTest, PrintsAsManyColumnsAsTheRulerHas) {
  EXPECT_THAT(Desk().printed("1", "0"), ElementsAre("Print "));
  EXPECT_THAT(Desk().printed("1", "70"), ElementsAre("Print " + ruler));
  EXPECT_THAT(Desk().printed("1", "75"), ElementsAre("Print " + ruler));
  EXPECT_EQ(ruler.size(), 70U);
}

TEST(CmdTest, PrintsTheRulerAloneForOneRow) { EXPECT_THAT(Desk().printed("1", "2"), ElementsAre("Print A2")); }

TEST(CmdTest, EndsTheDocumentAndShowsTheResultForNoRowsToo) {
  EXPECT_THAT(Desk().test("0", "12"), ElementsAre("Printers", "select 1", "EndDoc", result));
  EXPECT_THAT(Desk().test("-3", "12"), ElementsAre("Printers", "select 1", "EndDoc", result));
}

TEST(CmdTest, RoundsHalvesToEven) { EXPECT_THAT(Desk().printed("2,5", "3,5"), ElementsAre("Print A234", "Print R02")); }

TEST(CmdTest, NeedsTheSlipPrinterSetUp) {
  for (const std::string_view name : {"EPSON TM-L90 Receipt", "EPSON TM-U295", "", "epson tm-u295 slip"}) {
    Desk desk;
    desk.bridge.settings.RF_Stampante = name;
    EXPECT_THAT(desk.test("3", "12"), ElementsAre(notSetUp)) << name;
  }
  for (const Value& port : {Value(Null{}), Value(std::string()), Value(std::string(" ")), Value(no), Value(yes)}) {
    Desk desk;
    desk.bridge.settings.RF_Seriale = port;
    EXPECT_THAT(desk.test("3", "12"), ElementsAre(notSetUp));
  }
}

TEST(CmdTest, NeedsNumbersInBothBoxes) {
  const struct {
    std::string_view rows, columns;
  } boxes[] = {{"", "12"}, {"3", ""}, {"tre", "12"}, {"3", "12x"}, {" ", " "}};
  for (const auto& row : boxes) EXPECT_THAT(Desk().test(row.rows, row.columns), ElementsAre(noNumbers)) << row.rows;
}

TEST(CmdTest, PrintsOnTheCurrentPrinterWhereTheNamedOneIsNotInstalled) {
  Desk desk;
  desk.computer.Printer.installed.pop_back();
  EXPECT_THAT(desk.test("1", "1"), ElementsAre("Printers", "Print A", "EndDoc", result));
}

TEST(CmdTest, FailsAtNumbersThatItCannotUse) {
  const struct {
    std::string_view rows, columns;
  } boxes[] = {{"3", "-1"}, {"3", "40000"}, {"40000", "12"}, {"1e9", "12"}};
  for (const auto& row : boxes) {
    Desk desk;
    EXPECT_THROW(desk.test(row.rows, row.columns), StepFailed) << row.rows << " " << row.columns;
    EXPECT_THAT(desk.computer.journal.calls(), ElementsAre("Printers", "select 1"));
  }
}

TEST(CmdTest, LeavesAtEveryFailingStepAndAbandonsTheDocument) {
  sweepLeavingSteps([](std::size_t failingCall) {
    Desk desk;
    desk.computer.journal.failCall(failingCall);
    const bool fails = failingCall != 0 && failingCall != 7;  // the message box gives nothing to look at
    if (fails)
      EXPECT_THROW(desk.test("3", "12"), StepFailed);
    else
      desk.test("3", "12");
    Calls calls = desk.computer.journal.calls();
    const bool whilePrinting = fails && failingCall > 2;
    EXPECT_EQ(calls.back() == "abandon", whilePrinting);
    if (whilePrinting) calls.pop_back();
    EXPECT_EQ(desk.computer.Printer.printed.size(), fails ? 0U : 1U);
    return calls;
  });
}

}  // namespace
}  // namespace tellaxis
