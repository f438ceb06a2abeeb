// Tests of the folder printer: names, order and content of the files of a document.
#include "platform/printing/folder_printer.h"
#include "platform/printing/document_json.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "platform/temporary_folder.h"
#include "platform/trace_log.h"
#include "text/code_page.h"

namespace tellaxis::platform {
namespace {

using test::TemporaryFolder;
using test::TraceLog;
using testing::ElementsAre;
using testing::IsEmpty;

PrintStatement line(std::string text) { return {.text = std::move(text)}; }

struct FolderPrinterTest : testing::Test {
  bool print(const std::vector<Operation>& operations, std::optional<PageMaker> pages = std::nullopt) {
    FolderPrinter printer(folder / "", std::move(pages), trace);
    const auto document = printer.open();
    if (!document) return false;
    for (const Operation& operation : operations)
      if (!document->add(operation)) return false;
    return document->finish();
  }

  TemporaryFolder folder;
  TraceLog trace;
};

TEST_F(FolderPrinterTest, WritesJsonLinesAndText) {
  EXPECT_TRUE(print({
      Move{.x = 0},
      PaintedPicture{{"c:\\Meridia\\LogoCassa.bmp", 384, 96}, 0, 0},
      PrintStatement{"Totale \x80 5,00", "FontA15cpi", 18, true, {255, 0, 0}},
      Move{.y = 1.5},
      PrintStatement{"a\r\nb\"\\\t\x01", "Courier New", 9.5, false, {}},
  }));
  EXPECT_THAT(folder.names(), ElementsAre("000001.jsonl", "000001.txt"));
  EXPECT_EQ(
      folder.read("000001.jsonl"),
      R"({"op":"move","x":0,"y":null})"
      "\n"
      R"({"op":"picture","file":"c:\\Meridia\\LogoCassa.bmp","x":0,"y":0,"width":384,"height":96})"
      "\n"
      R"({"op":"print","text":"Totale € 5,00","font":"FontA15cpi","size":18,"bold":true,"color":"#ff0000"})"
      "\n"
      R"({"op":"move","x":null,"y":1.5})"
      "\n"
      R"({"op":"print","text":"a\r\nb\"\\\t\u0001","font":"Courier New","size":9.5,"bold":false,"color":"#000000"})"
      "\n");
  EXPECT_EQ(folder.read("000001.txt"), "Totale € 5,00\na\r\nb\"\\\t\x01\n");
}

TEST_F(FolderPrinterTest, JsonHoldsEveryByteOfTheCodePage) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  const auto json = nlohmann::json::parse(jsonOf(line(bytes)));
  EXPECT_EQ(codePageFromUtf8(json.at("text").get<std::string>()), bytes);
}

TEST_F(FolderPrinterTest, NumbersGoUpByOne) {
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(print({line("x")}));
  EXPECT_THAT(folder.names(),
              ElementsAre("000001.jsonl", "000001.txt", "000002.jsonl", "000002.txt", "000003.jsonl", "000003.txt"));
}

TEST_F(FolderPrinterTest, TheNextNumberIsAboveTheHighestPresent) {
  for (const char* name :
       {"000003.jsonl", "000007.txt", "000099.bak", "12.jsonl", "x00100.jsonl", "000200", "000300.jsonl.tmp"})
    folder.write(name, "");
  EXPECT_TRUE(print({line("x")}));
  EXPECT_EQ(folder.read("000008.txt"), "x\n");
  EXPECT_EQ(folder.names().size(), 9U);
}

TEST_F(FolderPrinterTest, GoesOnPastSixDigits) {
  folder.write("999999.jsonl", "");
  EXPECT_TRUE(print({line("x")}));
  EXPECT_TRUE(print({line("y")}));
  EXPECT_EQ(folder.read("1000001.txt"), "y\n");
}

TEST_F(FolderPrinterTest, ShowsNothingUnderItsNumberBeforeTheEnd) {
  FolderPrinter printer(folder / "", std::nullopt, trace);
  const auto document = printer.open();
  document->add(line("x"));
  for (const std::string& name : folder.names()) EXPECT_EQ(name.front(), '.') << name;
  EXPECT_TRUE(document->finish());
  EXPECT_THAT(folder.names(), ElementsAre("000001.jsonl", "000001.txt"));
}

TEST_F(FolderPrinterTest, ADocumentThatIsNotFinishedLeavesNothing) {
  FolderPrinter(folder / "", std::nullopt, trace).open()->add(line("x"));
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(FolderPrinterTest, CreatesItsFolderAndThoseAboveIt) {
  FolderPrinter printer(folder / "spool/più/l90", std::nullopt, trace);
  const auto document = printer.open();
  ASSERT_TRUE(document);
  document->add(line("x"));
  EXPECT_TRUE(document->finish());
  EXPECT_EQ(folder.read("spool/più/l90/000001.txt"), "x\n");
}

TEST_F(FolderPrinterTest, AFileInPlaceOfTheFolderIsAFailedStep) {
  FolderPrinter printer(folder.write("file", "") + "/spool", std::nullopt, trace);
  EXPECT_EQ(printer.open(), nullptr);
  EXPECT_EQ(trace.lines.size(), 1U);
}

TEST_F(FolderPrinterTest, AFolderThatVanishedIsAFailedStep) {
  FolderPrinter printer(folder / "spool", std::nullopt, trace);
  const auto document = printer.open();
  document->add(line("x"));
  std::error_code kept;
  std::filesystem::remove_all(folder.path("spool"), kept);
  if (kept) GTEST_SKIP() << "here no folder vanishes while a file in it is open";
  EXPECT_FALSE(document->finish());
  EXPECT_EQ(trace.lines.size(), 1U);
}

TEST_F(FolderPrinterTest, TwoDocumentsMayBeOpenInOneFolder) {
  FolderPrinter one(folder / "", std::nullopt, trace);
  FolderPrinter two(folder / "", std::nullopt, trace);
  const auto first = one.open();
  const auto second = two.open();
  first->add(line("1"));
  second->add(line("2"));
  EXPECT_TRUE(second->finish());
  EXPECT_TRUE(first->finish());
  EXPECT_EQ(folder.read("000001.txt"), "2\n");
  EXPECT_EQ(folder.read("000002.txt"), "1\n");
}

/// Stands for the drawing of pages: writes both files when it is finished.
class FakePage final : public DocumentSink {
 public:
  FakePage(const std::string& base, bool works) : pdf_(base + ".pdf"), png_(base + ".png"), works_(works) {}
  bool add(const Operation&) override { return true; }
  bool finish() override {
    std::ofstream(pdf_) << "pdf";
    std::ofstream(png_) << "png";
    return works_;
  }

 private:
  std::string pdf_;
  std::string png_;
  bool works_;
};

PageMaker fakePages(bool works) {
  return {{".pdf", ".png"}, [works](const std::string& base) { return std::make_unique<FakePage>(base, works); }};
}

TEST_F(FolderPrinterTest, PagesStandBesideTheText) {
  EXPECT_TRUE(print({line("x")}, fakePages(true)));
  EXPECT_THAT(folder.names(), ElementsAre("000001.jsonl", "000001.pdf", "000001.png", "000001.txt"));
}

TEST_F(FolderPrinterTest, APageThatCannotBeDrawnIsMissingAndTheRestIsThere) {
  EXPECT_TRUE(print({line("x")}, fakePages(false)));
  EXPECT_TRUE(print({line("y")}, PageMaker{{".png"}, [](const std::string&) { return nullptr; }}));
  EXPECT_THAT(folder.names(), ElementsAre("000001.jsonl", "000001.txt", "000002.jsonl", "000002.txt"));
}

}  // namespace
}  // namespace tellaxis::platform
