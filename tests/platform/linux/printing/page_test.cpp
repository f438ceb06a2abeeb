// Tests of drawn pages: colours, bar codes that a reader reads, long documents.
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <fstream>

#include "platform/linux/printing/highest_resident.h"
#include "platform/linux/printing/pages/bitmap_file.h"
#include "platform/linux/printing/pages/page_document.h"
#include "platform/printing/sample_documents.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

using test::TemporaryFolder;
using test::TraceLog;
using testing::HasSubstr;
using testing::IsEmpty;
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
