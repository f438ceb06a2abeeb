// Slip job: the three layouts, statement by statement, and leaving at the first failure.
#include "slip/job.h"

#include <algorithm>
#include <string>

#include "core/bridge.h"
#include "core/step_failed.h"
#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using fake::Calls;
using fake::sweepLeavingSteps;
using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr std::string_view job = "C:\\MERIDIA\\rf.txt";
constexpr std::string_view receipt = "EPSON TM-L90 Receipt";
constexpr std::string_view kube = "Custom KUBE Ric. Fisc. [A]";
constexpr std::string_view rows = "EPSON TM-U295 Slip";
constexpr std::string_view layouts[] = {receipt, kube, rows};

const std::string openJob = "openInput C:\\MERIDIA\\rf.txt";
const std::string readJob = "read C:\\MERIDIA\\rf.txt";
const std::string removeJob = "remove C:\\MERIDIA\\rf.txt";
const std::string mayRemove = "canRemove C:\\MERIDIA\\rf.txt";
const std::string whichJob = "identity C:\\MERIDIA\\rf.txt";

struct Desk {
  Desk(std::string_view printer, std::string_view text) {
    computer.Printer.installed = {{"PDF", "FILE:"}, {std::string(printer), "LPT1:"}};
    computer.files.put(job, text);
    bridge.settings.RF_Stampante = printer;
    bridge.settings.RF_File = job;
  }

  fake::Computer computer;
  Bridge bridge{computer.host};
  PrintedForms printedForms;

  bool hasJob() const { return computer.files.has(job); }
  /// What came out, form by form; a statement without text only opens its document.
  std::vector<std::vector<std::string>> forms() const {
    std::vector<std::vector<std::string>> all;
    for (const fake::PrintedDocument& document : computer.Printer.printed) {
      all.push_back(document.statements);
      std::erase_if(all.back(), [](const std::string& statement) { return statement.starts_with(", "); });
    }
    return all;
  }
  const Calls& calls() const { return computer.journal.calls(); }
  const Calls& print() {
    LanciaFileRF(bridge, printedForms);
    EXPECT_FALSE(computer.files.isOpen(job));
    return calls();
  }
};

std::string bodyLines(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "RR r" + std::to_string(i) + "\r\n";
  return text;
}

std::string repeated(std::string_view text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

const std::string headers = "I1 Bar Centrale\r\nI1 Via Roma 1\r\nI2 Ricevuta\r\n";
const std::string firstHeader = "Print Bar Centrale\r\nVia Roma 1\r\n\r\n \r\n ";
const std::string secondHeader = "Print Ricevuta\r\n\r\n \r\n ";
const std::string oneLine = "Print \r\n";

Calls receiptSection(const std::string& section, const Calls& pad) {
  Calls calls = {"Print ",           "CurrentY = 0", "FontSize 10", "FontName fontB12", firstHeader, "FontSize 10",
                 "FontName fontA11", secondHeader,   oneLine,       "Print " + section};
  calls.insert(calls.end(), pad.begin(), pad.end());
  const Calls secondCopy = {"Print " + repeated("\r\n", 10),
                            "FontSize 10",
                            "FontName fontB12",
                            firstHeader,
                            "FontName fontA11",
                            secondHeader,
                            oneLine,
                            "Print " + section,
                            "EndDoc"};
  calls.insert(calls.end(), secondCopy.begin(), secondCopy.end());
  return calls;
}

Calls kubeSection(const std::string& section, const Calls& pad) {
  Calls calls = {"Print ",    "CurrentY = 0", "FontSize 10", "FontName Courier New", "FontBold true", "Print \r\n\r\n",
                 firstHeader, secondHeader,   oneLine,       "Print " + section};
  calls.insert(calls.end(), pad.begin(), pad.end());
  const Calls secondCopy = {"Print \r\n\r\n\r\n", firstHeader, secondHeader, oneLine, "Print " + section, "EndDoc"};
  calls.insert(calls.end(), secondCopy.begin(), secondCopy.end());
  return calls;
}

Calls wholeJob(std::initializer_list<Calls> documents) {
  Calls calls = {"Printers", "select 1", mayRemove, whichJob, openJob, readJob, readJob};
  for (const Calls& document : documents) calls.insert(calls.end(), document.begin(), document.end());
  calls.push_back(removeJob);
  return calls;
}

TEST(LanciaFileRF, PrintsTwoCopiesOnTheReceiptPrinter) {
  Desk desk(receipt, headers + "RR Coperto\r\nRR Totale\r\n");
  EXPECT_THAT(
      desk.print(),
      ElementsAreArray(wholeJob({receiptSection("Coperto\r\nTotale\r\n", {"Print " + repeated(" \r\n", 20)})})));
  EXPECT_FALSE(desk.hasJob());
}

TEST(LanciaFileRF, PrintsTwoCopiesOnTheKube) {
  Desk desk(kube, headers + "RR Coperto\r\nRR Totale\r\n");
  EXPECT_THAT(desk.print(),
              ElementsAreArray(wholeJob({kubeSection("Coperto\r\nTotale\r\n", {"Print " + repeated(" \r\n", 20)})})));
  EXPECT_FALSE(desk.hasJob());
}

TEST(LanciaFileRF, PrintsADocumentForEachSectionAndThePadInTheLastOne) {
  std::string first;
  for (int i = 0; i < 23; ++i) first += "r" + std::to_string(i) + (i < 22 ? "\r\n" : "");
  const Calls pad = {"Print " + repeated(" \r\n", 20)};
  Desk onReceipt(receipt, headers + bodyLines(24));
  EXPECT_THAT(onReceipt.print(),
              ElementsAreArray(wholeJob({receiptSection(first, {}), receiptSection("r23\r\n", pad)})));
  Desk onKube(kube, headers + bodyLines(24));
  EXPECT_THAT(onKube.print(), ElementsAreArray(wholeJob({kubeSection(first, {}), kubeSection("r23\r\n", pad)})));
}

TEST(LanciaFileRF, PrintsThreeDocumentsForThreeSections) {
  for (const std::string_view layout : {receipt, kube}) {
    Desk desk(layout, bodyLines(65));
    desk.print();
    EXPECT_EQ(desk.computer.journal.callsThatBegin("EndDoc").size(), 3U);
  }
}

TEST(LanciaFileRF, PrintsOneDocumentWithAnEmptySectionForHeadersAlone) {
  Desk onReceipt(receipt, headers);
  EXPECT_THAT(onReceipt.print(), ElementsAreArray(wholeJob({receiptSection("", {"Print "})})));
  Desk onKube(kube, headers);
  EXPECT_THAT(onKube.print(), ElementsAreArray(wholeJob({kubeSection("", {"Print "})})));
}

TEST(LanciaFileRF, PrintsEveryRecordAsARowOnTheSlipPrinter) {
  Desk desk(rows, "RR Coperto\r\nI1 Bar\r\n\"xx a,b\"\r\nabc\r\n");
  EXPECT_THAT(desk.print(), ElementsAre("Printers", "select 1", mayRemove, whichJob, openJob, readJob,  //
                                        "FontName FontB11", "Print Coperto",                            //
                                        "FontName FontB11", "Print Bar",                                //
                                        "FontName FontB11", "Print a,b",                                //
                                        "FontName FontB11", "Print ", readJob,                          //
                                        "EndDoc", removeJob));
  EXPECT_FALSE(desk.hasJob());
}

TEST(LanciaFileRF, PrintsWhatFollowsACommaAsARowOfItsOwnOnTheSlipPrinter) {
  Desk desk(rows, "RR Coperto 10,500 euro\r\n");
  desk.print();
  EXPECT_THAT(desk.computer.journal.callsThatBegin("Print "), ElementsAre("Print Coperto 10", "Print  euro"));
}

TEST(LanciaFileRF, EndsAFormAfter41Rows) {
  const struct {
    int records;
    std::vector<int> rowsOfForms;
  } jobs[] = {{0, {}}, {1, {1}}, {41, {41}}, {42, {41, 1}}, {82, {41, 41}}, {83, {41, 41, 1}}};
  for (const auto& row : jobs) {
    Desk desk(rows, bodyLines(row.records));
    std::vector<int> rowsOfForms;
    int printed = 0;
    for (const std::string& call : desk.print()) {
      if (call.starts_with("Print ")) ++printed;
      if (call == "EndDoc") rowsOfForms.push_back(std::exchange(printed, 0));
    }
    EXPECT_EQ(rowsOfForms, row.rowsOfForms) << row.records;
    EXPECT_EQ(printed, 0);
    EXPECT_FALSE(desk.hasJob());
  }
}

TEST(LanciaFileRF, PassesAJobBeyondA16BitCountOfRowsOnTheSlipPrinter) {
  Desk desk(rows, bodyLines(40'000));
  desk.print();
  EXPECT_EQ(desk.computer.journal.callsThatBegin("EndDoc").size(), 976U);
}

TEST(LanciaFileRF, PrintsNothingForANameWithoutLayoutAndLeavesTheFile) {
  for (const std::string_view name : {"EPSON TM-U295", "epson tm-u295 slip", "EPSON TM-U295 Slip ", "PDF"}) {
    Desk desk(name, headers);
    EXPECT_TRUE(desk.print().back().starts_with("select ")) << name;
    EXPECT_TRUE(desk.hasJob());
  }
}

TEST(LanciaFileRF, PrintsOnTheCurrentPrinterWhereNoneHasTheName) {
  for (const std::string_view layout : layouts) {
    Desk desk(layout, headers + "RR x\r\n");
    desk.computer.Printer.installed[1].DeviceName = std::string(layout) + " (copia)";
    desk.print();
    EXPECT_TRUE(desk.computer.journal.callsThatBegin("select").empty());
    EXPECT_FALSE(desk.hasJob());
  }
}

TEST(LanciaFileRF, TakesTheFirstPrinterOfTheName) {
  Desk desk(rows, "RR x\r\n");
  desk.computer.Printer.installed.push_back({std::string(rows), "LPT2:"});
  EXPECT_EQ(desk.print()[1], "select 1");
}

TEST(LanciaFileRF, LeavesAtARecordThatIsTooShortAndKeepsTheFile) {
  const struct {
    std::string_view layout, job;
  } jobs[] = {{rows, "RR x\r\nRR\r\n"},
              {rows, "RR x\r\n\r\n"},
              {rows, "RR 10,50\r\n"},
              {receipt, "RR\r\n"},
              {kube, "I1\r\nRR x\r\n"}};
  for (const auto& row : jobs) {
    Desk desk(row.layout, row.job);
    EXPECT_THROW(desk.print(), StepFailed) << row.job;
    EXPECT_TRUE(desk.hasJob());
    EXPECT_TRUE(desk.computer.journal.callsThatBegin("EndDoc").empty());
    EXPECT_FALSE(desk.computer.files.isOpen(job));
  }
}

TEST(LanciaFileRF, PrintsNothingOfAJobThatFailsWhileItIsReadForTwoCopies) {
  for (const std::string_view layout : {receipt, kube}) {
    Desk desk(layout, headers + bodyLines(32'768));
    EXPECT_THROW(desk.print(), StepFailed);
    EXPECT_TRUE(desk.computer.journal.callsThatBegin("Print ").empty());
    EXPECT_TRUE(desk.hasJob());
  }
}

TEST(LanciaFileRF, LeavesWhereTheFileIsMissing) {
  for (const std::string_view layout : layouts) {
    Desk desk(layout, "");
    desk.computer.files.erase(job);
    EXPECT_THROW(desk.print(), StepFailed);
    EXPECT_EQ(desk.calls().back(), mayRemove);
  }
}

TEST(LanciaFileRF, LeavesAtEveryFailingStepKeepsTheFileAndAbandonsTheDocument) {
  for (const std::string_view layout : layouts)
    sweepLeavingSteps([&](std::size_t failingCall) {
      Desk desk(layout, headers + bodyLines(45));
      desk.computer.journal.failCall(failingCall);
      if (failingCall == 0)
        desk.print();
      else
        EXPECT_THROW(desk.print(), StepFailed);
      EXPECT_EQ(desk.hasJob(), failingCall != 0);
      EXPECT_FALSE(desk.computer.files.isOpen(job));
      Calls calls = desk.calls();
      const auto opened = std::find(calls.begin(), calls.end(), openJob);
      const bool whilePrinting = failingCall != 0 && opened != calls.end() && calls[failingCall - 1] != removeJob;
      EXPECT_EQ(calls.back() == "abandon", whilePrinting);
      if (whilePrinting) calls.pop_back();
      return calls;
    });
}

TEST(LanciaFileRF, AfterAnySingleFailureEveryFormComesOutOnceAndWhole) {
  for (const std::string_view layout : layouts) {
    Desk undisturbed(layout, headers + bodyLines(45));
    const std::size_t calls = undisturbed.print().size();
    for (std::size_t failing = 1; failing <= calls; ++failing) {
      Desk desk(layout, headers + bodyLines(45));
      desk.computer.journal.failCall(failing);
      EXPECT_THROW(desk.print(), StepFailed);
      desk.print();
      EXPECT_FALSE(desk.hasJob());
      ASSERT_EQ(desk.forms(), undisturbed.forms()) << layout << ", call " << failing;
    }
  }
}

TEST(LanciaFileRF, NothingOfAJobThatCannotBeReadComesOutWithTheNextOne) {
  Desk desk(rows, "RR uno\r\nRR due\r\nR\r\n");
  EXPECT_THROW(desk.print(), StepFailed);
  EXPECT_THROW(desk.print(), StepFailed);
  desk.computer.files.put(job, "RR tre\r\n");
  desk.print();
  EXPECT_THAT(desk.forms(), ElementsAre(ElementsAre("tre, FontB11, 10, not bold, #000000")));
}

TEST(LanciaFileRF, FormsBeforeARecordThatCannotBeReadComeOutOnceHoweverOftenItIsTried) {
  Desk desk(rows, bodyLines(41) + "R\r\n");
  for (int tick = 0; tick < 3; ++tick) EXPECT_THROW(desk.print(), StepFailed);
  EXPECT_EQ(desk.forms().size(), 1U);
}

TEST(LanciaFileRF, AFileThatCannotBeDeletedIsNotPrinted) {
  for (const std::string_view layout : layouts) {
    Desk desk(layout, headers + "RR x\r\n");
    desk.computer.files.protect(job);
    EXPECT_THROW(desk.print(), StepFailed);
    EXPECT_TRUE(desk.forms().empty());
    desk.computer.files.unprotect(job);
    desk.print();
    EXPECT_EQ(desk.forms().size(), 1U);
  }
}

TEST(LanciaFileRF, AFileThatWasPrintedAndNotDeletedIsOnlyDeletedUntilItIsAnotherOne) {
  Desk desk(rows, "RR x\r\n");
  desk.computer.journal.failCall(11);  // the deletion
  EXPECT_THROW(desk.print(), StepFailed);
  EXPECT_EQ(desk.forms().size(), 1U);
  desk.computer.journal.failCall(0);
  EXPECT_THAT(desk.print(), ElementsAre("Printers", "select 1", mayRemove, whichJob, removeJob));
  EXPECT_EQ(desk.forms().size(), 1U);

  desk.computer.files.put(job, "RR x\r\n");
  desk.print();
  EXPECT_EQ(desk.forms().size(), 2U) << "the same text, but another file";
}

TEST(LanciaFileRF, TheColourAndBoldnessOfAnotherJobAreNotItsOwn) {
  Desk desk(rows, "RR x\r\n");
  desk.computer.Printer.ForeColor({255, 0, 0});
  desk.computer.Printer.FontBold(true);
  desk.print();
  EXPECT_THAT(desk.forms(), ElementsAre(ElementsAre("x, FontB11, 10, not bold, #000000")));
}

TEST(SlipPrinter, IsTheOneOfItsNameOrTheCurrentOne) {
  Desk desk(rows, "RR x\r\n");
  EXPECT_EQ(slipPrinter(desk.bridge)->DeviceName, rows);
  desk.computer.Printer.installed.pop_back();
  EXPECT_EQ(slipPrinter(desk.bridge)->DeviceName, "PDF");
  desk.computer.Printer.installed.clear();
  EXPECT_FALSE(slipPrinter(desk.bridge).has_value());
  EXPECT_THAT(desk.computer.journal.callsThatBegin("select"), testing::IsEmpty()) << "looking chooses nothing";
}

TEST(SlipPrinter, IsNoneForANameWithoutALayout) {
  Desk desk("EPSON TM-T88", "RR x\r\n");
  EXPECT_FALSE(slipPrinter(desk.bridge).has_value());
}

}  // namespace
}  // namespace tellaxis
