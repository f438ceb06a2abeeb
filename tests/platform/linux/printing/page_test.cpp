// Tests of drawn pages: what stands where, colours, bar codes that a reader reads, long documents.
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <fstream>

#include "platform/linux/printing/highest_resident.h"
#include "platform/linux/printing/pages/bitmap_file.h"
#include "platform/linux/printing/pages/page_document.h"
#include "platform/linux/printing/pages/page_layout.h"
#include "platform/printing/sample_documents.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

using test::TemporaryFolder;
using test::TraceLog;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

PrintStatement text(std::string line, std::string font = "FontA11", double size = 9, bool bold = false,
                    Color color = {}) {
  return {std::move(line), std::move(font), size, bold, color};
}

std::optional<Bitmap> readPicture(std::string_view file) {
  auto read = readBitmapFile(std::string(file));
  if (auto* bitmap = std::get_if<Bitmap>(&read)) return std::move(*bitmap);
  return std::nullopt;
}

/// What a program wrote on its standard output.
std::string outputOf(const std::string& command) {
  std::FILE* pipe = popen((command + " 2>/dev/null").c_str(), "r");
  std::string output;
  std::array<char, 256> block{};
  while (const std::size_t got = std::fread(block.data(), 1, block.size(), pipe)) output.append(block.data(), got);
  pclose(pipe);
  return output;
}

std::vector<Page> pagesOf(const std::string& deviceName, const std::vector<Operation>& operations) {
  Typefaces typefaces;
  std::vector<Page> pages;
  PageLayout layout(paperOf(deviceName), typefaces, readPicture, [&](Page page) { pages.push_back(std::move(page)); });
  for (const Operation& operation : operations) layout.add(operation);
  layout.finish();
  return pages;
}

std::vector<PlacedText> textsOf(const Page& page) {
  std::vector<PlacedText> texts;
  for (const Placed& item : page.items)
    if (const auto* placed = std::get_if<PlacedText>(&item)) texts.push_back(*placed);
  return texts;
}

std::vector<std::string> linesOf(const Page& page) {
  std::vector<std::string> lines;
  for (const PlacedText& placed : textsOf(page)) lines.push_back(placed.text);
  return lines;
}

TEST(PageLayout, ARollIsAsLongAsItsText) {
  const auto one = pagesOf("X", {text("a")});
  const auto twenty = pagesOf("X", std::vector<Operation>(20, text("a")));
  ASSERT_THAT(one, SizeIs(1));
  ASSERT_THAT(twenty, SizeIs(1));
  EXPECT_EQ(one[0].width, 80 * dotsPerMillimetre);
  EXPECT_GE(one[0].height, 20 * dotsPerMillimetre);
  EXPECT_GT(twenty[0].height, one[0].height + 400);
}

TEST(PageLayout, ASlipIsAFormAndLongerTextTakesAnother) {
  const auto pages = pagesOf("EPSON TM-U295 Slip", std::vector<Operation>(60, text("a", "FontB11")));
  ASSERT_THAT(pages, SizeIs(2));
  EXPECT_EQ(pages[0].height, pages[1].height);
  EXPECT_GE(pages[0].items.size(), 41U);
}

TEST(PageLayout, DeviceFontsKeepTheirColumns) {
  const auto pages = pagesOf("X", {text(std::string(42, 'a')), text(std::string(56, 'b'), "FontB11"),
                                   text(std::string(42, 'c'), "FontA15cpi"), text(std::string(48, 'd'), "FontB17cpi")});
  ASSERT_THAT(pages, SizeIs(1));
  EXPECT_THAT(linesOf(pages[0]),
              ElementsAre(std::string(42, 'a'), std::string(56, 'b'), std::string(42, 'c'), std::string(48, 'd')));
}

TEST(PageLayout, TextWiderThanARollGoesOnInTheNextLineAndOnAFormEnds) {
  EXPECT_THAT(linesOf(pagesOf("X", {text(std::string(43, 'a'))})[0]), ElementsAre(std::string(42, 'a'), "a"));
  EXPECT_THAT(linesOf(pagesOf("EPSON TM-U295 Slip", {text(std::string(70, 'a'), "FontB11")})[0]),
              ElementsAre(std::string(42, 'a')));
}

TEST(PageLayout, BlanksAtTheEndTakeNoLine) {
  const auto lines = textsOf(pagesOf("X", {text("a" + std::string(80, ' ')), text("b")})[0]);
  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_LT(lines[1].y - lines[0].y, 40);
}

TEST(PageLayout, ScaleAndSizeMakeLettersHigher) {
  const auto lines = textsOf(pagesOf("X", {text("a", "FontA15cpi", 9), text("b", "FontA15cpi", 18),
                                           text("c", "FontB1x2"), text("d", "FontB1x1"), text("e", "FontA21")})[0]);
  ASSERT_THAT(lines, SizeIs(5));
  EXPECT_DOUBLE_EQ(lines[1].height, 2 * lines[0].height);
  EXPECT_DOUBLE_EQ(lines[1].cellWidth, lines[0].cellWidth);
  EXPECT_DOUBLE_EQ(lines[2].height, 2 * lines[3].height);
  EXPECT_DOUBLE_EQ(lines[4].cellWidth, 2 * 576.0 / 42);
}

TEST(PageLayout, EveryPieceOfAStatementEndsItsLine) {
  const auto lines = textsOf(pagesOf("X", {text("a\r\nb\r\n"), text("c")})[0]);
  ASSERT_THAT(lines, SizeIs(3));
  EXPECT_DOUBLE_EQ(lines[2].y - lines[1].y, 2 * (lines[1].y - lines[0].y));
}

TEST(PageLayout, APositionIsWhereTheNextLineStands) {
  const auto lines = textsOf(
      pagesOf("X", {text(""), Move{.y = 0}, text("a"), Move{.x = 1440}, Move{.y = 1440}, text("b"), text("c")})[0]);
  const double inch = 25.4 * dotsPerMillimetre;
  ASSERT_THAT(lines, SizeIs(3));
  EXPECT_NEAR(lines[1].y - lines[0].y, inch, 0.01);
  EXPECT_NEAR(lines[1].x - lines[0].x, inch, 0.01);
  EXPECT_DOUBLE_EQ(lines[2].x, lines[0].x);
}

TEST(PageLayout, ControlLettersAreNotPrintedAndACutEndsThePaper) {
  const auto pages = pagesOf("X", {text("w", "FontControl"), text("a"), text("P", "FontControl")});
  ASSERT_THAT(pages, SizeIs(1));
  EXPECT_THAT(linesOf(pages[0]), ElementsAre("a"));
  ASSERT_TRUE(std::holds_alternative<PlacedCut>(pages[0].items.back()));
  EXPECT_LT(pages[0].height - std::get<PlacedCut>(pages[0].items.back()).y, 5 * dotsPerMillimetre);
}

TEST(PageLayout, WhatIsNoEanIsText) {
  EXPECT_THAT(linesOf(pagesOf("X", {text("8001234567890", "JAN13(EAN)", 18)})[0]), ElementsAre("8001234567890"));
}

TEST(PageLayout, ALongRollIsPartedIntoPages) {
  const auto pages = pagesOf("X", std::vector<Operation>(3000, text("a")));
  EXPECT_GT(pages.size(), 2U);
  std::size_t lines = 0;
  for (const Page& page : pages) {
    EXPECT_LE(page.height, 4020 * dotsPerMillimetre);
    lines += page.items.size();
  }
  EXPECT_EQ(lines, 3000U);
}

TEST(PageLayout, OneHugeStatementIsPartedToo) {
  std::string huge;
  for (int i = 0; i < 3000; ++i) huge += "riga\r\n";
  EXPECT_GT(pagesOf("X", {text(huge)}).size(), 2U);
}

TEST(PageLayout, ManyLinesInOnePlaceFillAPageToo) {
  std::vector<Operation> operations;
  for (int i = 0; i < 10'000; ++i) {
    operations.push_back(Move{.y = 0});
    operations.push_back(text("a"));
  }
  for (const Page& page : pagesOf("X", operations)) EXPECT_LE(page.items.size(), 5000U);
}

struct PageFilesTest : testing::Test {
  bool draw(const std::string& deviceName, const std::vector<Operation>& operations, int mostPages = 0) {
    const auto document = openPages({folder / "p.pdf", folder / "p.png", mostPages}, deviceName, readPicture, trace);
    for (const Operation& operation : operations) document->add(operation);
    return document->finish();
  }

  /// Pixels of the PNG as rows of red, green and blue.
  Bitmap png() const {
    GdkPixbuf* pixbuf = gdk_pixbuf_new_from_file((folder / "p.png").c_str(), nullptr);
    Bitmap bitmap{.width = gdk_pixbuf_get_width(pixbuf), .height = gdk_pixbuf_get_height(pixbuf)};
    for (int y = 0; y < bitmap.height; ++y) {
      const guchar* row = gdk_pixbuf_get_pixels(pixbuf) + std::ptrdiff_t{y} * gdk_pixbuf_get_rowstride(pixbuf);
      bitmap.pixels.insert(bitmap.pixels.end(), row, row + std::ptrdiff_t{3} * bitmap.width);
    }
    g_object_unref(pixbuf);
    return bitmap;
  }

  int countPixels(Color color) const {
    const Bitmap bitmap = png();
    int count = 0;
    for (std::size_t i = 0; i < bitmap.pixels.size(); i += 3)
      count +=
          bitmap.pixels[i] == color.red && bitmap.pixels[i + 1] == color.green && bitmap.pixels[i + 2] == color.blue;
    return count;
  }

  TemporaryFolder folder;
  TraceLog trace;
};

TEST_F(PageFilesTest, TextCanBeReadBackFromThePdf) {
  EXPECT_TRUE(draw("X", {text("Totale \x80 5,00 perch\xE9"), text("Grazie", "Courier New", 10)}));
  const std::string read = outputOf("pdftotext -layout " + folder / "p.pdf" + " -");
  EXPECT_THAT(read, HasSubstr("Totale € 5,00 perché"));
  EXPECT_THAT(read, HasSubstr("Grazie"));
}

TEST_F(PageFilesTest, ThePdfPageIsReceiptPaper) {
  EXPECT_TRUE(draw("X", {text("a")}));
  EXPECT_THAT(outputOf("pdfinfo " + folder / "p.pdf"), HasSubstr("226.7"));
}

TEST_F(PageFilesTest, RedIsRedAndBlackIsBlack) {
  EXPECT_TRUE(draw("X", {text("TOTALE", "FontA15cpi", 18, true, {255, 0, 0})}));
  EXPECT_GT(countPixels({255, 0, 0}), 200);
  EXPECT_EQ(countPixels({0, 0, 0}), 0);
  EXPECT_TRUE(draw("X", {text("TOTALE", "FontA15cpi", 18, true)}));
  EXPECT_EQ(countPixels({255, 0, 0}), 0);
  EXPECT_GT(countPixels({0, 0, 0}), 200);
}

TEST_F(PageFilesTest, BoldHasMoreInk) {
  const auto ink = [&](bool bold) {
    EXPECT_TRUE(draw("X", {text("TOTALE EURO", "FontA11", 9, bold)}));
    return countPixels({0, 0, 0});
  };
  EXPECT_GT(ink(true), ink(false) * 3 / 2);
}

TEST_F(PageFilesTest, TheBarCodeIsReadByAReader) {
  for (const char* align : {"w", "x", "y"}) {
    EXPECT_TRUE(draw("X", {text("r", "FontControl"), text(align, "FontControl"),
                           text("8001234567897", "JAN13(EAN)", 18), text("Grazie")}));
    EXPECT_EQ(outputOf("zbarimg -q " + folder / "p.png"), "EAN-13:8001234567897\n") << align;
  }
}

TEST_F(PageFilesTest, TheLogoIsDrawnInItsSize) {
  const std::string logo = folder.write("logo.bmp", test::logoBitmap());
  EXPECT_TRUE(draw("X", {PaintedPicture{{logo, 384, 96}, 0, 0}}));
  const Bitmap page = png();
  const auto isBlack = [&](int x, int y) { return page.pixels[(std::size_t{1} * y * page.width + x) * 3] == 0; };
  EXPECT_TRUE(isBlack(32, 32));
  EXPECT_TRUE(isBlack(32 + 383, 32 + 95));
  EXPECT_FALSE(isBlack(31, 32));
  EXPECT_FALSE(isBlack(32 + 384, 32 + 95));
  EXPECT_FALSE(isBlack(32, 32 + 96));
}

TEST_F(PageFilesTest, ADamagedLogoIsLeftOut) {
  const std::string logo = folder.write("logo.bmp", test::logoBitmap().substr(0, 5000));
  EXPECT_TRUE(draw("X", {PaintedPicture{{logo, 384, 96}, 0, 0}, text("a")}));
  EXPECT_GT(countPixels({0, 0, 0}), 0);
}

TEST_F(PageFilesTest, EverySampleIsDrawn) {
  const std::string logo = folder.write("logo.bmp", test::logoBitmap());
  for (const test::SampleDocument& sample : test::sampleDocuments(logo)) {
    EXPECT_TRUE(draw(sample.deviceName, sample.operations)) << sample.name;
    EXPECT_GT(countPixels({0, 0, 0}), 100) << sample.name;
  }
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(PageFilesTest, ADocumentThatIsNotFinishedLeavesNoFile) {
  openPages({folder / "p.pdf", folder / "p.png"}, "X", readPicture, trace)->add(text("a"));
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(PageFilesTest, AFolderThatIsNotThereIsAFailedStep) {
  const auto document = openPages({folder / "none/p.pdf", folder / "none/p.png"}, "X", readPicture, trace);
  document->add(text("a"));
  EXPECT_FALSE(document->finish());
  EXPECT_THAT(trace.lines, SizeIs(1));
}

TEST_F(PageFilesTest, AllPagesOfALongDocumentAreInThePdfUpToTheBound) {
  EXPECT_TRUE(draw("X", std::vector<Operation>(3000, text("a"))));
  EXPECT_THAT(outputOf("pdfinfo " + folder / "p.pdf"), HasSubstr("Pages:           4"));
  EXPECT_TRUE(draw("X", std::vector<Operation>(3000, text("a")), 2));
  EXPECT_THAT(outputOf("pdfinfo " + folder / "p.pdf"), HasSubstr("Pages:           2"));
}

TEST_F(PageFilesTest, LengthNeedsNoMemory) {
  ASSERT_TRUE(draw("X", std::vector<Operation>(100, text("a"))));
  test::forgetHighestResident();
  const auto drawLines = [&](int count) {
    const auto document = openPages({folder / "p.pdf", folder / "p.png"}, "X", readPicture, trace);
    for (int i = 0; i < count; ++i) document->add(text("Articolo di prova numero " + std::to_string(i)));
    EXPECT_TRUE(document->finish());
    return test::highestResident();
  };
  const long few = drawLines(2'000);
  const long many = drawLines(40'000);
  EXPECT_LT(many - few, 8 * 1024) << "kilobytes";
}

}  // namespace
}  // namespace tellaxis::platform
