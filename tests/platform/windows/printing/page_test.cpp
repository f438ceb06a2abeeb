// Tests of pages drawn by GDI: letters in their columns, colours, bars and pictures to the dot, bounds.
#include <gmock/gmock.h>
#include <windows.h>

#include <cstdlib>
#include <filesystem>

#include "platform/printing/papers.h"
#include "platform/printing/sample_documents.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"
#include "platform/windows/printing/pages/gdi_typefaces.h"
#include "platform/windows/printing/pages/page_document.h"
#include "platform/windows/printing/pictures.h"

namespace tellaxis::platform {
namespace {

using test::TemporaryFolder;
using test::TraceLog;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int dotsOfRoll = 640;
constexpr int leftMargin = 32;

PrintStatement text(std::string line, std::string font = "FontA11", double size = 9, bool bold = false,
                    Color color = {}) {
  return {std::move(line), std::move(font), size, bold, color};
}

struct WindowsPageTest : testing::Test {
  /// Draws a document as the page `name`.bmp.
  bool draw(const std::string& deviceName, const std::vector<Operation>& operations, const std::string& name = "p") {
    const auto read = [&](std::string_view file) { return readPixels(file, trace); };
    const auto document = openPictures(deviceName, read, trace).open(folder / name);
    for (const Operation& operation : operations) document->add(operation);
    return document->finish();
  }

  Bitmap page(const std::string& name = "p") { return readPixels(folder / name + ".bmp", trace).value_or(Bitmap{}); }

  TemporaryFolder folder;
  TraceLog trace;
};

const std::uint8_t* pixelAt(const Bitmap& bitmap, int x, int y) {
  return &bitmap.pixels[(static_cast<std::size_t>(y) * static_cast<std::size_t>(bitmap.width) +
                         static_cast<std::size_t>(x)) *
                        3];
}

/// How much is black between two columns of dots: whole dots.
double ink(const Bitmap& bitmap, int left, int right) {
  double sum = 0;
  for (int y = 0; y < bitmap.height; ++y)
    for (int x = left; x < right; ++x) sum += 255 - pixelAt(bitmap, x, y)[1];
  return sum / 255;
}

int count(const Bitmap& bitmap, Color color) {
  int found = 0;
  for (std::size_t i = 0; i < bitmap.pixels.size(); i += 3)
    found += bitmap.pixels[i] == color.red && bitmap.pixels[i + 1] == color.green && bitmap.pixels[i + 2] == color.blue;
  return found;
}

TEST_F(WindowsPageTest, ARollIsAsWideAsItsPaperAndAsLongAsItsText) {
  EXPECT_TRUE(draw("X", {text("a")}));
  EXPECT_EQ(page().width, dotsOfRoll);
  const int height = page().height;
  EXPECT_TRUE(draw("X", std::vector<Operation>(20, text("a"))));
  EXPECT_GT(page().height, height + 400);
  EXPECT_THAT(folder.names(), ElementsAre("p.bmp"));
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(WindowsPageTest, EveryLetterStandsInTheCellOfItsColumn) {
  for (const int column : {0, 1, 20, 40, 41}) {
    std::string line(42, ' ');
    line[static_cast<std::size_t>(column)] = 'H';
    EXPECT_TRUE(draw("X", {text(line)}));
    const double cell = 576.0 / 42;
    const int left = leftMargin + static_cast<int>(column * cell);
    const Bitmap drawn = page();
    EXPECT_GT(ink(drawn, left, left + static_cast<int>(cell) + 1), 30) << column;
    EXPECT_EQ(ink(drawn, 0, left - 1), 0) << column;
    EXPECT_EQ(ink(drawn, left + static_cast<int>(cell) + 2, dotsOfRoll), 0) << column;
  }
}

TEST_F(WindowsPageTest, WideLettersFillTheirCells) {
  EXPECT_TRUE(draw("X", {text("HH", "FontA21")}));
  const double cell = 2 * 576.0 / 42;
  const double third = cell / 3;
  const Bitmap drawn = page();
  for (const double left : {leftMargin + 0.0, leftMargin + cell}) {
    EXPECT_GT(ink(drawn, static_cast<int>(left), static_cast<int>(left + third)), 20);
    EXPECT_GT(ink(drawn, static_cast<int>(left + 2 * third), static_cast<int>(left + cell)), 20);
  }
  EXPECT_EQ(ink(drawn, static_cast<int>(leftMargin + 2 * cell) + 2, dotsOfRoll), 0);
}

TEST_F(WindowsPageTest, RedIsRedAndBlackIsBlack) {
  EXPECT_TRUE(draw("X", {text("TOTALE", "FontA15cpi", 18, true, {255, 0, 0})}));
  EXPECT_GT(count(page(), {255, 0, 0}), 200);
  EXPECT_EQ(count(page(), {0, 0, 0}), 0);
  EXPECT_TRUE(draw("X", {text("TOTALE", "FontA15cpi", 18, true)}));
  EXPECT_EQ(count(page(), {255, 0, 0}), 0);
  EXPECT_GT(count(page(), {0, 0, 0}), 200);
}

TEST_F(WindowsPageTest, BoldHasMoreInk) {
  const auto inkOf = [&](bool bold) {
    EXPECT_TRUE(draw("X", {text("TOTALE EURO", "FontA11", 9, bold)}));
    return ink(page(), 0, dotsOfRoll);
  };
  EXPECT_GT(inkOf(true), inkOf(false) * 1.15);
}

TEST_F(WindowsPageTest, ABarIsThreeDotsAModule) {
  EXPECT_TRUE(draw("X", {text("w", "FontControl"), text("8001234567897", "JAN13(EAN)", 18)}));
  const Bitmap drawn = page();
  const int y = leftMargin + 8 + 50;
  int left = 0;
  while (left < dotsOfRoll && pixelAt(drawn, left, y)[0] == 255) ++left;
  ASSERT_EQ(left, 45) << "the margin and a letter";
  std::string modules;
  for (int module = 0; module < 95; ++module) {
    const std::uint8_t first = pixelAt(drawn, left + module * 3, y)[0];
    for (int dot = 0; dot < 3; ++dot) ASSERT_EQ(pixelAt(drawn, left + module * 3 + dot, y)[0], first) << module;
    modules += first == 0 ? '1' : '0';
  }
  EXPECT_THAT(modules.substr(0, 3) + modules.substr(45, 5) + modules.substr(92), "10101010101");
  EXPECT_EQ(ink(drawn, left + 95 * 3, dotsOfRoll), 0);
}

TEST_F(WindowsPageTest, TheLogoIsDrawnInItsSize) {
  const std::string logo = folder.write("logo.bmp", test::logoBitmap());
  const auto expected = readPixels(logo, trace);
  ASSERT_TRUE(expected);
  EXPECT_TRUE(draw("X", {PaintedPicture{{logo, 384, 96}, 0, 0}}));
  const Bitmap drawn = page();
  for (int y = 0; y < 96; ++y)
    for (int x = 0; x < 384; ++x)
      for (int part = 0; part < 3; ++part)
        ASSERT_EQ(pixelAt(drawn, leftMargin + x, 32 + y)[part], pixelAt(*expected, x, y)[part]) << x << ", " << y;
  EXPECT_EQ(ink(drawn, 0, leftMargin) + ink(drawn, leftMargin + 384, dotsOfRoll), 0);
}

TEST_F(WindowsPageTest, ALogoWiderThanThePaperIsMadeSmaller) {
  const std::string logo = folder.write("logo.bmp", test::logoBitmap());
  EXPECT_TRUE(draw("X", {PaintedPicture{{logo, 384, 96}, 1440 * 1.5, 0}}));
  const Bitmap drawn = page();
  EXPECT_GT(ink(drawn, leftMargin + 305, dotsOfRoll - leftMargin), 100);
  EXPECT_EQ(ink(drawn, dotsOfRoll - leftMargin + 1, dotsOfRoll), 0);
}

TEST_F(WindowsPageTest, WhereThePaperIsCutThereIsADashedLine) {
  EXPECT_TRUE(draw("X", {text("P", "FontControl")}));
  EXPECT_EQ(count(page(), {0x8C, 0x8C, 0x8C}), 2 * 12 * (dotsOfRoll / 20));
}

TEST_F(WindowsPageTest, EverySampleIsDrawn) {
  const std::string logo = folder.write("logo.bmp", test::logoBitmap());
  for (const test::SampleDocument& sample : test::sampleDocuments(logo)) {
    EXPECT_TRUE(draw(sample.deviceName, sample.operations)) << sample.name;
    EXPECT_GT(count(page(), {0, 0, 0}), 100) << sample.name;
  }
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(WindowsPageTest, OfALongDocumentTheFirstPageIsDrawnAndOfThatTwoMetresAndAHalf) {
  EXPECT_TRUE(draw("X", std::vector<Operation>(3000, text("Totale"))));
  EXPECT_EQ(page().height, 20'000);
  EXPECT_EQ(std::filesystem::file_size(folder / "p.bmp"), 54U + 640U * 3 * 20'000);
}

TEST_F(WindowsPageTest, AFolderThatIsNotThereIsAFailedStep) {
  EXPECT_FALSE(draw("X", {text("a")}, "none/p"));
  EXPECT_THAT(trace.lines, SizeIs(1));
}

TEST_F(WindowsPageTest, NoDocumentKeepsAnythingOfTheSystems) {
  const auto drawAll = [&] {
    std::vector<Operation> operations;
    for (int size = 8; size < 108; ++size) operations.push_back(text("a", "Arial", size));
    for (int i = 0; i < 40; ++i) operations.push_back(text("a", "Sconosciuto " + std::to_string(i)));
    EXPECT_TRUE(draw("X", operations));
  };
  drawAll();
  const DWORD before = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  for (int i = 0; i < 5; ++i) drawAll();
  EXPECT_EQ(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), before);
}

TEST(GdiTypefaces, LettersOfOneWidthHaveItWhicheverFontsThereAre) {
  GdiTypefaces typefaces;
  for (const char* family : {deviceFamily, "Courier New"})
    for (const bool bold : {false, true}) {
      const LetterMeasures letters = typefaces.measures({family, bold});
      for (const char letter : {'i', 'W', '0', '.', '\xE8'})
        EXPECT_DOUBLE_EQ(letters.advances[static_cast<unsigned char>(letter)], letters.advances['0']) << letter;
      EXPECT_GT(letters.advances['0'], 0.5);
      EXPECT_LT(letters.advances['0'], 0.7);
    }
}

TEST(GdiTypefaces, MeasuresAreThoseOfTheFontThatIsSelected) {
  GdiTypefaces typefaces;
  const DeviceContext context(CreateCompatibleDC(nullptr));
  for (const char* family : {"Arial", "Courier New", "Tahoma", "Sconosciuto"}) {
    const Typeface typeface{family};
    const LetterMeasures measures = typefaces.measures(typeface);
    constexpr int height = 400;
    ASSERT_TRUE(typefaces.select(context.get(), typeface, {height, 0}));
    const double size = height / measures.height();
    for (const wchar_t* word : {L"i", L"W", L"Totale"}) {
      double width = 0;
      for (const wchar_t* letter = word; *letter != 0; ++letter) width += measures.advances.at(*letter) * size;
      SIZE extent;
      ASSERT_NE(GetTextExtentPoint32W(context.get(), word, static_cast<int>(std::wcslen(word)), &extent), 0);
      EXPECT_NEAR(extent.cx, width, width * 0.02 + 1) << family;
      EXPECT_NEAR(extent.cy, height, 4) << family;
    }
    SelectObject(context.get(), GetStockObject(SYSTEM_FONT));
  }
}

}  // namespace
}  // namespace tellaxis::platform
