// Tests of the font and colour in force: what a choice of a printer begins with, and what stays.
#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "platform/printing/document_json.h"
#include "platform/printing/streaming_printer.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

using test::TraceLog;
using testing::ElementsAre;

struct KeepAll final : DocumentSink {
  explicit KeepAll(std::vector<std::string>& to) : lines(to) {}
  bool add(const Operation& operation) override {
    lines.push_back(jsonOf(operation));
    return true;
  }
  bool finish() override { return true; }
  std::vector<std::string>& lines;
};

struct KeepAllBackEnd final : PrinterBackEnd {
  explicit KeepAllBackEnd(std::vector<std::string>& to) : lines(to) {}
  std::unique_ptr<DocumentSink> open() override { return std::make_unique<KeepAll>(lines); }
  PrinterState state() override { return PrinterState::ready; }
  std::vector<std::string>& lines;
};

struct FontInForce : testing::Test {
  std::vector<std::string> lines;
  TraceLog trace;
  std::unique_ptr<StreamingPrinter> printer = [this] {
    std::vector<ListedPrinter> listed;
    listed.push_back({{"A", "COM1:"}, std::make_unique<KeepAllBackEnd>(lines)});
    listed.push_back({{"B", "COM2:"}, std::make_unique<KeepAllBackEnd>(lines)});
    return std::make_unique<StreamingPrinter>(
        std::move(listed), nullptr, [](std::string_view) { return std::nullopt; }, trace);
  }();
};

TEST_F(FontInForce, StartsAsCourierNewTenBlack) {
  printer->Print("x");
  EXPECT_THAT(
      lines, ElementsAre(R"({"op":"print","text":"x","font":"Courier New","size":10,"bold":false,"color":"#000000"})"));
}

TEST_F(FontInForce, SurvivesTheEndOfADocumentAndBeginsAnewWithTheChoiceOfAPrinter) {
  printer->FontName("FontA15cpi");
  printer->FontSize(18);
  printer->FontBold(true);
  printer->ForeColor({255, 0, 0});
  printer->Print("x");
  printer->EndDoc();
  printer->Print("x");
  const auto* set = R"({"op":"print","text":"x","font":"FontA15cpi","size":18,"bold":true,"color":"#ff0000"})";
  EXPECT_THAT(lines, ElementsAre(set, set));
  lines.clear();
  const auto* fresh = R"({"op":"print","text":"x","font":"Courier New","size":10,"bold":false,"color":"#000000"})";
  printer->select(0);
  printer->Print("x");
  printer->FontBold(true);
  printer->select(1);
  printer->Print("x");
  EXPECT_THAT(lines, ElementsAre(fresh, fresh));
}

TEST_F(FontInForce, AnEmptyNameAndASizeNotAboveZeroAreFailedStepsThatChangeNothing) {
  EXPECT_FALSE(printer->FontName(""));
  for (const double size : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity()})
    EXPECT_FALSE(printer->FontSize(size)) << size;
  EXPECT_EQ(trace.lines.size(), 5U);
  printer->Print("x");
  EXPECT_THAT(
      lines, ElementsAre(R"({"op":"print","text":"x","font":"Courier New","size":10,"bold":false,"color":"#000000"})"));
}

TEST_F(FontInForce, KeepsFractionsOfAPoint) {
  printer->FontSize(9.5);
  printer->Print("");
  EXPECT_THAT(
      lines, ElementsAre(R"({"op":"print","text":"","font":"Courier New","size":9.5,"bold":false,"color":"#000000"})"));
}

}  // namespace
}  // namespace tellaxis::platform
