// Tests of the printer object: enumeration, font in force, open documents and failures.
#include "platform/printing/streaming_printer.h"

#include <gmock/gmock.h>

#include <cmath>

#include "platform/printing/document_json.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

using test::TraceLog;
using testing::ElementsAre;
using testing::IsEmpty;

/// What happened at all back ends, in order; "opens" and "takes" say how many operations still succeed.
struct Journal {
  std::vector<std::string> lines;
  int opens = 1000;
  int takes = 1000;
  bool finishes = true;
  int lists = 0;  ///< how often the system was asked for its printers
  std::size_t systemDefault = 1;
};

class JournalSink final : public DocumentSink {
 public:
  JournalSink(std::string name, Journal& journal) : name_(std::move(name)), journal_(journal) {}
  bool add(const Operation& operation) override {
    if (journal_.takes-- <= 0) return false;
    const std::string json = jsonOf(operation);
    const auto* print = std::get_if<PrintStatement>(&operation);
    journal_.lines.push_back(name_ + " " + (print != nullptr ? print->text : json));
    return true;
  }
  ~JournalSink() override {
    if (!ended_) journal_.lines.push_back(name_ + " abandoned");
  }
  JournalSink(const JournalSink&) = delete;
  JournalSink& operator=(const JournalSink&) = delete;
  bool finish() override {
    ended_ = true;
    journal_.lines.push_back(name_ + " end");
    return journal_.finishes;
  }

 private:
  std::string name_;
  Journal& journal_;
  bool ended_ = false;
};

class JournalBackEnd final : public PrinterBackEnd {
 public:
  PrinterState state() override { return PrinterState::ready; }
  JournalBackEnd(std::string name, Journal& journal) : name_(std::move(name)), journal_(journal) {}
  std::unique_ptr<DocumentSink> open() override {
    if (journal_.opens-- <= 0) return nullptr;
    return std::make_unique<JournalSink>(name_, journal_);
  }

 private:
  std::string name_;
  Journal& journal_;
};

class Spooler final : public SystemPrinters {
 public:
  Spooler(Journal& journal, bool& available) : journal_(journal), available_(available) {}
  std::optional<SystemPrinterList> list() override {
    ++journal_.lists;
    if (!available_) return std::nullopt;
    return SystemPrinterList{.printers = {{"Agenda", "USB002"}, {"Laser", "USB001"}},
                             .defaultIndex = journal_.systemDefault};
  }
  std::unique_ptr<PrinterBackEnd> backEnd(const InstalledPrinter& printer) override {
    return std::make_unique<JournalBackEnd>(printer.DeviceName, journal_);
  }

 private:
  Journal& journal_;
  bool& available_;
};

struct StreamingPrinterTest : testing::Test {
  std::unique_ptr<StreamingPrinter> printerWith(std::vector<std::string> names, bool withSpooler = false) {
    std::vector<ListedPrinter> listed;
    int port = 0;
    for (const std::string& name : names)
      listed.push_back({{name, "COM" + std::to_string(++port) + ":"}, std::make_unique<JournalBackEnd>(name, journal)});
    return std::make_unique<StreamingPrinter>(
        std::move(listed), withSpooler ? std::make_unique<Spooler>(journal, spoolerAvailable) : nullptr,
        [](std::string_view file) {
          return Picture{std::string(file), 8, 4};
        },
        trace);
  }

  Journal journal;
  bool spoolerAvailable = true;
  TraceLog trace;
};

std::vector<std::string> namesOf(const std::optional<std::vector<InstalledPrinter>>& printers) {
  std::vector<std::string> names;
  if (printers)
    for (const InstalledPrinter& printer : *printers) names.push_back(printer.DeviceName + " " + printer.Port);
  return names;
}

TEST_F(StreamingPrinterTest, ListsTheDevicesFileFirstThenTheSystemsOwn) {
  auto printer = printerWith({"A", "B"}, true);
  EXPECT_THAT(namesOf(printer->Printers()), ElementsAre("A COM1:", "B COM2:", "Agenda USB002", "Laser USB001"))
      << "the system's in its own order, wherever its default stands";
}

TEST_F(StreamingPrinterTest, TheSystemIsNotAskedForAPrinterOfTheDevicesFile) {
  auto printer = printerWith({"A", "B"}, true);
  const PrinterSearch listed = findPrinterNamed(*printer, "B");
  EXPECT_TRUE(listed.complete);
  EXPECT_EQ(listed.index, 1U);
  EXPECT_EQ(journal.lists, 0);
  EXPECT_EQ(findPrinterNamed(*printer, "Laser").index, 3U);
  const PrinterSearch none = findPrinterNamed(*printer, "C");
  EXPECT_TRUE(none.complete);
  EXPECT_EQ(none.index, std::nullopt);
  spoolerAvailable = false;
  EXPECT_FALSE(findPrinterNamed(*printer, "Laser").complete) << "it may be there or not";
  EXPECT_TRUE(findPrinterNamed(*printer, "A").complete);
}

TEST_F(StreamingPrinterTest, AFailingSpoolerHidesOnlyItsOwnPrinters) {
  spoolerAvailable = false;
  EXPECT_THAT(namesOf(printerWith({"A"}, true)->Printers()), ElementsAre("A COM1:"));
  EXPECT_EQ(printerWith({}, true)->Printers(), std::nullopt);
}

TEST_F(StreamingPrinterTest, TheSystemsDefaultIsAskedForEachDocument) {
  auto printer = printerWith({}, true);
  printer->Print("1");
  journal.systemDefault = 0;
  printer->Print("2");
  printer->EndDoc();
  printer->Print("3");
  printer->EndDoc();
  EXPECT_THAT(journal.lines, ElementsAre("Laser 1", "Laser 2", "Laser end", "Agenda 3", "Agenda end"));
}

TEST_F(StreamingPrinterTest, TheFirstOfTheDevicesFileOrElseTheSystemsIsTheDefault) {
  EXPECT_EQ(printerWith({"A", "B"})->DeviceName(), "A");
  EXPECT_EQ(printerWith({}, true)->DeviceName(), "Laser");
  auto printer = printerWith({"A", "B"});
  printer->Print("x");
  EXPECT_THAT(journal.lines, ElementsAre("A x"));
}

TEST_F(StreamingPrinterTest, WithoutAnyPrinterEveryStatementFails) {
  auto printer = printerWith({});
  EXPECT_EQ(printer->DeviceName(), "");
  EXPECT_FALSE(printer->Print("x"));
  EXPECT_FALSE(printer->CurrentX(0));
  EXPECT_FALSE(printer->select(0));
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_EQ(trace.lines.size(), 4U);
}

TEST_F(StreamingPrinterTest, PrintsOnTheChosenPrinter) {
  auto printer = printerWith({"A", "B"}, true);
  printer->Printers();
  ASSERT_TRUE(printer->select(3));
  EXPECT_EQ(printer->DeviceName(), "Laser");
  printer->Print("x");
  printer->EndDoc();
  EXPECT_THAT(journal.lines, ElementsAre("Laser x", "Laser end"));
  EXPECT_FALSE(printer->select(4));
  EXPECT_EQ(printer->DeviceName(), "Laser");
}

TEST_F(StreamingPrinterTest, EachAssignmentOfThePositionIsOneMove) {
  auto printer = printerWith({"A"});
  printer->Print("x");
  printer->CurrentX(0);
  printer->CurrentY(12.5);
  EXPECT_THAT(journal.lines,
              ElementsAre("A x", R"(A {"op":"move","x":0,"y":null})", R"(A {"op":"move","x":null,"y":12.5})"));
  EXPECT_EQ(printer->CurrentX(), 0);
  EXPECT_EQ(printer->CurrentY(), 12.5);
}

TEST_F(StreamingPrinterTest, APositionThatIsNoNumberIsAFailedStep) {
  auto printer = printerWith({"A"});
  EXPECT_FALSE(printer->CurrentX(std::nan("")));
  EXPECT_EQ(printer->CurrentX(), 0);
}

TEST_F(StreamingPrinterTest, AnEndWithoutAnyStatementWritesNothing) {
  auto printer = printerWith({"A"});
  EXPECT_TRUE(printer->EndDoc());
  printer->Print("x");
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_THAT(journal.lines, ElementsAre("A x", "A end"));
}

TEST_F(StreamingPrinterTest, MovesAloneMakeNoDocumentAndAreForgottenAtItsEnd) {
  auto printer = printerWith({"A"});
  printer->CurrentX(5);
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_THAT(journal.lines, IsEmpty());
  printer->Print("x");
  EXPECT_THAT(journal.lines, ElementsAre("A x"));
}

TEST_F(StreamingPrinterTest, MovesBeforeTheFirstStatementBelongToItsDocument) {
  auto printer = printerWith({"A"});
  printer->CurrentX(0);
  printer->CurrentY(0);
  const auto picture = printer->LoadPicture("c:\\Meridia\\LogoCassa.bmp");
  ASSERT_TRUE(picture);
  EXPECT_TRUE(printer->PaintPicture(*picture, printer->CurrentX(), printer->CurrentY()));
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_THAT(journal.lines,
              ElementsAre(R"(A {"op":"move","x":0,"y":null})", R"(A {"op":"move","x":null,"y":0})",
                          R"(A {"op":"picture","file":"c:\\Meridia\\LogoCassa.bmp","x":0,"y":0,"width":8,"height":4})",
                          "A end"));
}

TEST_F(StreamingPrinterTest, APictureThatWasNotLoadedIsAFailedStep) {
  auto printer = printerWith({"A"});
  EXPECT_FALSE(printer->PaintPicture({}, 0, 0));
  EXPECT_FALSE(printer->PaintPicture({"x.bmp", 0, 5}, 0, 0));
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_THAT(journal.lines, IsEmpty());
}

TEST_F(StreamingPrinterTest, ADocumentStaysOpenAcrossJobsAndPrinters) {
  auto printer = printerWith({"A", "B"});
  printer->Print("1");
  printer->select(1);
  printer->Print("2");
  printer->select(0);
  printer->Print("3");
  printer->EndDoc();
  printer->select(1);
  printer->EndDoc();
  EXPECT_THAT(journal.lines, ElementsAre("A 1", "B 2", "A 3", "A end", "B end"));
}

TEST_F(StreamingPrinterTest, OpenDocumentsAreEndedWithTheProgramInTheOrderOfTheirOpening) {
  auto printer = printerWith({"A", "B"});
  printer->select(1);
  printer->Print("1");
  printer->select(0);
  printer->Print("2");
  printer->endOpenDocuments();
  printer->endOpenDocuments();
  EXPECT_THAT(journal.lines, ElementsAre("B 1", "A 2", "B end", "A end"));
}

TEST_F(StreamingPrinterTest, AStatementThatFailsCostsItselfAlone) {
  auto printer = printerWith({"A"});
  journal.takes = 1;
  EXPECT_TRUE(printer->Print("1"));
  EXPECT_FALSE(printer->Print("2"));
  EXPECT_FALSE(printer->CurrentX(5));
  EXPECT_EQ(printer->CurrentX(), 0);
  journal.takes = 1000;
  EXPECT_TRUE(printer->Print("3"));
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_THAT(journal.lines, ElementsAre("A 1", "A 3", "A end"));
}

TEST_F(StreamingPrinterTest, ADocumentThatCouldNotBeOpenedIsTriedAgainByTheNextStatement) {
  auto printer = printerWith({"A"});
  printer->CurrentX(5);
  journal.opens = 0;
  EXPECT_FALSE(printer->Print("1"));
  journal.opens = 1000;
  EXPECT_TRUE(printer->Print("2"));
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_THAT(journal.lines, ElementsAre(R"(A {"op":"move","x":5,"y":null})", "A 2", "A end"));
}

TEST_F(StreamingPrinterTest, AFailureOfAJobWithoutItsEndIsNotCarriedIntoTheNextOne) {
  auto printer = printerWith({"A"});
  journal.opens = 0;
  EXPECT_FALSE(printer->Print("1"));
  journal.opens = 1000;
  printer->select(0);
  EXPECT_TRUE(printer->Print("2"));
  EXPECT_TRUE(printer->EndDoc());
  EXPECT_THAT(journal.lines, ElementsAre("A 2", "A end"));
}

TEST_F(StreamingPrinterTest, NothingOfAnAbandonedDocumentIsPrintedAndOtherPrintersKeepTheirs) {
  auto printer = printerWith({"A", "B"});
  printer->Print("1");
  printer->select(1);
  printer->Print("2");
  printer->CurrentX(5);
  printer->abandon();
  printer->abandon();
  EXPECT_EQ(printer->CurrentX(), 0);
  printer->Print("3");
  printer->endOpenDocuments();
  EXPECT_THAT(journal.lines,
              ElementsAre("A 1", "B 2", R"(B {"op":"move","x":5,"y":null})", "B abandoned", "B 3", "A end", "B end"));
}

TEST_F(StreamingPrinterTest, AFailedEndIsNotSentAgain) {
  auto printer = printerWith({"A"});
  journal.finishes = false;
  printer->Print("1");
  EXPECT_FALSE(printer->EndDoc());
  EXPECT_TRUE(printer->EndDoc());
  printer->endOpenDocuments();
  EXPECT_THAT(journal.lines, ElementsAre("A 1", "A end"));
}

}  // namespace
}  // namespace tellaxis::platform
