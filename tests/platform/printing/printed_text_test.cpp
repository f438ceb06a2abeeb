// Tests of printed text, bar code digits, device fonts, papers and dots.
#include "platform/printing/printed_text.h"

#include <gmock/gmock.h>

#include "platform/printing/bitmap.h"
#include "platform/printing/device_fonts.h"
#include "platform/printing/papers.h"
#include "platform/printing/spool.h"

namespace tellaxis::platform {
namespace {

using testing::ElementsAre;

TEST(PrintedText, EveryLineEndBeginsAnotherLine) {
  EXPECT_THAT(printedLines(""), ElementsAre(""));
  EXPECT_THAT(printedLines("a\r\nb\nc\rd"), ElementsAre("a", "b", "c", "d"));
  EXPECT_THAT(printedLines("a\r\n"), ElementsAre("a", ""));
  EXPECT_THAT(printedLines("\n\r"), ElementsAre("", "", ""));
}

TEST(PrintedText, TabsReachTheNextEighthColumnAndControlsAreBlanks) {
  EXPECT_THAT(printedLines("ab\tc"), ElementsAre("ab      c"));
  EXPECT_THAT(printedLines("a\x1B@\x81\x7F"), ElementsAre("a @??"));
}

TEST(Ean13, TakesTwelveOrThirteenDigits) {
  EXPECT_EQ(ean13("800123456789"), "8001234567897");
  EXPECT_EQ(ean13(" 8001234567897 "), "8001234567897");
  EXPECT_EQ(ean13("000000000000"), "0000000000000");
}

TEST(Ean13, RefusesAnythingElse) {
  for (const char* text : {"", " ", "8001234567890", "80012345678", "80012345678977", "80012345678A", "8001 234567897"})
    EXPECT_EQ(ean13(text), std::nullopt) << text;
}

TEST(DeviceFonts, NamesPromiseFaceScaleAndPitch) {
  struct Promise {
    const char* name;
    double size;
    PrintedFont font;
  };
  const Promise promises[] = {
      {"FontControl", 9, {.kind = FontKind::control}},
      {"JAN13(EAN)", 18, {.kind = FontKind::barCode}},
      {"FontA15cpi", 9, {.face = Face::a, .pitch = 15}},
      {"FontA15cpi", 18, {.face = Face::a, .pitch = 15, .height = 2}},
      {"FontB17cpi", 9, {.face = Face::b, .pitch = 17}},
      {"FontA1x1", 14, {.face = Face::a}},
      {"FontB1x1", 1, {.face = Face::b}},
      {"FontB1x2", 14, {.face = Face::b, .height = 2}},
      {"fontA11", 10, {.face = Face::a}},
      {"fontB12", 10, {.face = Face::b, .height = 2}},
      {"FontB11", 10, {.face = Face::b}},
      {"FontA21", 10, {.face = Face::a, .width = 2}},
      {"FontB3x8", 10, {.face = Face::b, .width = 3, .height = 8}},
      {"FontC11", 10, {.kind = FontKind::outline}},
      {"FontA99", 10, {.kind = FontKind::outline}},
      {"Courier New", 9, {.kind = FontKind::outline}},
      {"Courier New", 20, {.kind = FontKind::outline, .width = 2, .height = 2}},
      {"Arial", 1000, {.kind = FontKind::outline, .width = 8, .height = 8}},
  };
  for (const Promise& promise : promises) {
    const PrintedFont font = printedFont(promise.name, promise.size);
    EXPECT_EQ(font.kind, promise.font.kind) << promise.name;
    EXPECT_EQ(font.face, promise.font.face) << promise.name;
    EXPECT_EQ(font.pitch, promise.font.pitch) << promise.name;
    EXPECT_EQ(font.width, promise.font.width) << promise.name;
    EXPECT_EQ(font.height, promise.font.height) << promise.name;
  }
}

TEST(Papers, AreFoundByTheNameOfThePrinter) {
  EXPECT_GT(paperOf("EPSON TM-U295 Slip").formLength, 0);
  EXPECT_EQ(paperOf("EPSON TM-L90 Receipt").formLength, 0);
  EXPECT_EQ(paperOf("EPSON TM-L90 Receipt").columnsA, 48);
  EXPECT_EQ(paperOf("anything").width, 80);
  EXPECT_EQ(paperOf("").width, 80);
}

TEST(Dots, AreMadeSmallerToFitAndKeepTheirPicture) {
  Bitmap bitmap{.width = 1000, .height = 100};
  for (int y = 0; y < 100; ++y)
    for (int x = 0; x < 1000; ++x) bitmap.pixels.insert(bitmap.pixels.end(), 3, x < 500 ? 0 : 255);
  const Dots dots = dotsOf(bitmap, 200);
  EXPECT_EQ(dots.width, 200);
  EXPECT_EQ(dots.height, 20);
  for (int x = 0; x < 200; ++x) EXPECT_EQ(dots.at(x, 10), x < 100) << x;
}

TEST(Dots, GreyIsAPatternOfAsManyDotsAsItIsDark) {
  const Bitmap bitmap{.width = 64, .height = 64, .pixels = std::vector<std::uint8_t>(std::size_t{64} * 64 * 3, 191)};
  const Dots dots = dotsOf(bitmap, 576);
  int black = 0;
  for (int y = 0; y < 64; ++y)
    for (int x = 0; x < 64; ++x) black += dots.at(x, y) ? 1 : 0;
  EXPECT_NEAR(black, 64 * 64 / 4.0, 64);
}

TEST(Spool, GivesBackWhatItWasGivenInMemoryAndOnDisk) {
  for (const std::size_t bound : {std::size_t{10}, std::size_t{1'000'000}}) {
    Spool spool(bound);
    std::string all;
    for (int i = 0; i < 1000; ++i) {
      const std::string piece = std::to_string(i) + ";";
      all += piece;
      EXPECT_TRUE(spool.append(piece));
    }
    EXPECT_EQ(spool.size(), all.size());
    ASSERT_TRUE(spool.rewind());
    std::string back;
    std::array<char, 7> block{};
    while (const std::size_t got = spool.read(block)) back.append(block.data(), got);
    EXPECT_EQ(back, all);
    EXPECT_FALSE(spool.failed());
  }
}

}  // namespace
}  // namespace tellaxis::platform
