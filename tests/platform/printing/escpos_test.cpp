// Tests of the receipt-printer commands: golden bytes, what they say, and that no text can become a command.
#include "platform/printing/escpos_encoder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <random>

#include "escpos_decoder.h"
#include "platform/printing/papers.h"
#include "platform/printing/sample_documents.h"

namespace tellaxis::platform {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using tools::Decoded;
using tools::decodeEscPos;

/// A picture whose left half is black.
Bitmap halfBlack(int width, int height) {
  Bitmap bitmap{width, height, {}};
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) bitmap.pixels.insert(bitmap.pixels.end(), 3, x < width / 2 ? 0 : 255);
  return bitmap;
}

std::string encoded(const std::string& deviceName, const std::vector<Operation>& operations) {
  EscPosEncoder encoder(paperOf(deviceName), [](std::string_view file) -> std::optional<Bitmap> {
    if (file == "missing.bmp") return std::nullopt;
    if (file == "long.bmp") return halfBlack(16, 600);
    return halfBlack(384, 96);
  });
  std::string bytes;
  for (const Operation& operation : operations) encoder.encode(operation, bytes);
  encoder.finish(bytes);
  return bytes;
}

std::vector<std::string> events(const std::string& deviceName, const std::vector<Operation>& operations) {
  Decoded decoded = decodeEscPos(encoded(deviceName, operations));
  EXPECT_EQ(decoded.error, std::nullopt);
  EXPECT_GE(decoded.events.size(), 1U);
  if (!decoded.events.empty()) decoded.events.erase(decoded.events.begin());
  return decoded.events;
}

PrintStatement text(std::string line, std::string font = "FontA11", double size = 9, bool bold = false,
                    Color color = {}) {
  return {std::move(line), std::move(font), size, bold, color};
}

std::string fileText(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(EscPosGolden, EverySampleIsItsFileByteForByte) {
  for (const test::SampleDocument& sample : test::sampleDocuments("logo.bmp")) {
    const std::string path = TEST_DATA "/data/escpos/" + std::string(sample.name) + ".bin";
    const std::string bytes = encoded(sample.deviceName, sample.operations);
    if (std::getenv("TELLAXIS_WRITE_GOLDEN") != nullptr) std::ofstream(path, std::ios::binary) << bytes;
    EXPECT_EQ(bytes, fileText(path)) << sample.name;
    EXPECT_EQ(decodeEscPos(bytes).error, std::nullopt) << sample.name;
  }
}

TEST(EscPos, BeginsWithAResetAndTheCodePageAfterIt) {
  EXPECT_EQ(encoded("SAMSUNG", {text("a")}),
            "\x1B@\x1Bt\x10"
            "a\n");
  EXPECT_EQ(encoded("Star TSP100", {text("a")}),
            "\x1B@\x1Bt\x20"
            "a\n");
}

TEST(EscPos, EuroSignAndAccentsAreBytesOfTheCodePage) {
  EXPECT_THAT(events("SAMSUNG", {text("\x80 5 caff\xE8")}), ElementsAre("text \x80 5 caff\xE8"));
}

TEST(EscPos, FacesScalesBoldAndRedAreSaidOnceAndTakenBack) {
  EXPECT_THAT(events("SAMSUNG", {text("a", "FontB17cpi"), text("b", "FontB17cpi"),
                                 text("c", "FontA15cpi", 18, true, {255, 0, 0}), text("d", "FontA15cpi")}),
              ElementsAre("face 1", "text a", "text b", "face 0", "scale 1", "bold 1", "red 1", "text c", "scale 0",
                          "bold 0", "red 0", "text d"));
}

TEST(EscPos, AFontOfTheComputerGrowsInBothDirections) {
  EXPECT_THAT(events("UNIPOS", {text("a", "Courier New", 9), text("b", "Courier New", 20)}),
              ElementsAre("text a", "scale 17", "text b"));
}

TEST(EscPos, ImpactPrintersGetOneModeByte) {
  EXPECT_THAT(events("EPSON TM-U220", {text("a", "FontB12", 10, true)}), ElementsAre("mode 25", "text a"));
}

TEST(EscPos, ASlipIsTakenInAndEjected) {
  EXPECT_THAT(events("EPSON TM-U295 Slip", {text("a")}), ElementsAre("paper 4", "text a", "eject"));
}

TEST(EscPos, LineEndsInsideAStatementEndLines) {
  EXPECT_THAT(events("X", {text("a\r\nb\rc\n")}), ElementsAre("text a", "text b", "text c", "line"));
}

TEST(EscPos, ControlLettersAreCommandsAndNeverPrinted) {
  EXPECT_THAT(events("X", {text("w", "FontControl"), text("a"), text(" ", "FontControl"), text("?", "FontControl"),
                           text("P", "FontControl")}),
              ElementsAre("text a", "line", "cut 0"));
}

TEST(EscPos, ABarCodeStandsInTheMiddleWithItsDigitsAndTextGoesBackToTheLeft) {
  EXPECT_THAT(events("X", {text("r", "FontControl"), text("x", "FontControl"), text("800123456789", "JAN13(EAN)", 18),
                           text("a")}),
              ElementsAre("align 1", "bar height 100", "bar width 3", "bar digits 2", "ean13 8001234567897", "align 0",
                          "text a"));
}

TEST(EscPos, WhatIsNoEanIsPrintedAsText) {
  EXPECT_THAT(events("X", {text("8001234567890", "JAN13(EAN)", 18), text("12A", "JAN13(EAN)", 18)}),
              ElementsAre("text 8001234567890", "text 12A"));
}

TEST(EscPos, ALongPictureIsSentInSlices) {
  EXPECT_THAT(events("X", {PaintedPicture{{"long.bmp", 16, 600}, 0, 0}}),
              ElementsAre("raster 2x255", "raster 2x255", "raster 2x90"));
}

TEST(EscPos, PrintersWithoutRasterGetColumns) {
  const auto said = events("EPSON TM-U220", {PaintedPicture{{"long.bmp", 16, 600}, 0, 0}});
  EXPECT_EQ(said.size(), 2U + 75U * 2);
  EXPECT_EQ(said[0], "spacing 16");
  EXPECT_EQ(said[1], "columns 16");
  EXPECT_EQ(said.back(), "normal spacing");
}

TEST(EscPos, APictureKeepsItsBlackDots) {
  const std::string bytes = encoded("X", {PaintedPicture{{"long.bmp", 16, 600}, 0, 0}});
  EXPECT_EQ(bytes.substr(5, 12), std::string("\x1Dv0\0\x02\0\xFF\0\xFF\0\xFF\0", 12));
}

TEST(EscPos, APictureThatCannotBeReadIsLeftOut) {
  EXPECT_THAT(events("X", {PaintedPicture{{"missing.bmp", 16, 600}, 0, 0}, text("a")}), ElementsAre("text a"));
}

TEST(EscPos, AnEmptyStatementTakenBackByAMoveLeavesNoLine) {
  EXPECT_THAT(events("X", {text(""), Move{.y = 0}, text("a")}), ElementsAre("text a"));
  EXPECT_THAT(events("X", {text(""), text("a")}), ElementsAre("line", "text a"));
}

TEST(EscPos, AMoveFeedsForwardOnly) {
  EXPECT_THAT(events("X", {text("a"), Move{.y = 0}, text("b")}), ElementsAre("text a", "text b"));
  EXPECT_THAT(events("X", {Move{.y = 1440}, text("a")}),
              ElementsAre("line", "line", "line", "line", "line", "feed 33", "text a"));
}

TEST(EscPos, AMoveToTheRightHoldsForOneLine) {
  EXPECT_THAT(events("X", {Move{.x = 1440}, text("a"), text("b")}), ElementsAre("left 203", "text a", "text b"));
  EXPECT_THAT(events("X", {Move{.x = 3}, text("a")}), ElementsAre("text a"));
}

TEST(EscPos, OnlyTheSlipPrintersOnRollsCutByThemselves) {
  EXPECT_THAT(events("EPSON TM-L90 Receipt", {text("a")}), ElementsAre("text a", "cut 0"));
  EXPECT_THAT(events("Custom KUBE Ric. Fisc. [A]", {text("a")}), ElementsAre("text a", "cut 0"));
  EXPECT_THAT(events("OLIVETTI PRT100", {text("a"), text(" "), text(" ")}), ElementsAre("text a", "line", "line"));
}

TEST(EscPos, NoTextIsACommand) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(decodeEscPos(encoded("X", {text(all), text(all, "JAN13(EAN)"), text(all, "FontControl"),
                                       text(all, "Courier New", 200, true)}))
                .error,
            std::nullopt);
}

TEST(EscPos, EveryDocumentIsAcceptedByTheDecoder) {
  std::mt19937 random(20261121);
  const auto pick = [&](auto... choices) {
    const std::vector<std::common_type_t<decltype(choices)...>> all{choices...};
    return all[random() % all.size()];
  };
  using std::string;
  for (int round = 0; round < 100; ++round) {
    std::vector<Operation> operations;
    for (int i = 0; i < 20; ++i) {
      string line;
      for (auto length = random() % 60; length > 0; --length) line += static_cast<char>(random());
      const string font = pick(string("FontControl"), string("JAN13(EAN)"), string("FontA15cpi"), string("fontB12"),
                               string("FontA88"), string("Courier New"), string("Arial"), line);
      const double size = pick(1.0, 9.0, 9.5, 18.0, 400.0);
      operations.push_back(PrintStatement{line, font, size, pick(true, false), pick(Color{}, Color{255, 0, 0})});
      if (pick(0, 1, 2) == 0) operations.push_back(Move{.x = pick(-5.0, 0.0, 3000.0, 1e18), .y = {}});
      if (pick(0, 1, 2) == 0) operations.push_back(Move{.x = {}, .y = pick(-5.0, 0.0, 3000.0, 1e18)});
      if (pick(0, 1, 2, 3, 4, 5) == 0) operations.push_back(PaintedPicture{{"long.bmp", 16, 600}, 0, 0});
    }
    const string device = pick(string("X"), string("EPSON TM-U295 Slip"), string("TM-L90"), string("TM-U220"));
    ASSERT_EQ(decodeEscPos(encoded(device, operations)).error, std::nullopt);
  }
}

TEST(EscPosDecoder, RefusesGarbage) {
  using namespace std::string_literals;
  const std::string begin = "\x1B@\x1Bt\x10"s;
  ASSERT_EQ(decodeEscPos(begin + "a\n").error, std::nullopt);
  for (const std::string& bytes : {""s,
                                   "a\n"s,
                                   "\x1B@"s,
                                   "\x1B@a\n"s,
                                   begin + "a",
                                   begin + "\x1B",
                                   begin + "\x1BZ",
                                   begin + "\x1BM",
                                   begin + "\x1BM\x02",
                                   begin + "\x1D",
                                   begin + "\x1D!\x80",
                                   begin + "\x1DV\x41\x01",
                                   begin + "\x01",
                                   begin + "\r\n",
                                   begin + "\t\n",
                                   begin + "\x7F\n",
                                   begin + "\x81\n",
                                   begin + "a\x1B\x45\x01\n",
                                   begin + "\x1Dv0"s + "\0\x02\0\x02\0abc"s,
                                   begin + "\x1Dv0"s + "\0\x02\0\x00\x01"s + std::string(512, 'a'),
                                   begin + "\x1Bk\x43\x0D",
                                   begin + "\x1Dk\x43\x0D" + "8001234567890",
                                   begin + "\x1Dk\x43\x0D" + "80012345678",
                                   begin + "\x1B*\0\x10\0abc"s,
                                   begin + "\x1BJ\0"s,
                                   begin + "a\f"})
    EXPECT_NE(decodeEscPos(bytes).error, std::nullopt) << testing::PrintToString(bytes);
}

TEST(EscPosDecoder, RefusesAPictureCutShortAnywhere) {
  const auto sample = test::sampleDocuments("logo.bmp").front();
  const std::string bytes = encoded(sample.deviceName, sample.operations);
  for (std::size_t length = 6; length + 1 < bytes.size(); ++length)
    ASSERT_NE(decodeEscPos(bytes.substr(0, length)).error, std::nullopt) << length;
}

TEST(EscPosEncoder, ALongStretchOfEmptyLinesNeedsNoMemory) {
  EscPosEncoder encoder(paperOf("X"), nullptr);
  std::size_t most = 0;
  std::size_t lines = 0;
  for (int i = 0; i < 100'000; ++i) {
    std::string bytes;
    encoder.encode(text(""), bytes);
    most = std::max(most, bytes.size());
    lines += static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
  }
  std::string bytes;
  encoder.finish(bytes);
  lines += static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
  EXPECT_LT(most, 2000U);
  EXPECT_EQ(lines, 100'000U);
}

}  // namespace
}  // namespace tellaxis::platform
