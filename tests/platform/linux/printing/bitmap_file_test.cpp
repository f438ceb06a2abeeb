// Tests of the bitmap reader: every kind of BMP, and damaged ones.
#include "platform/linux/printing/pages/bitmap_file.h"

#include <gmock/gmock.h>

#include <fstream>
#include <random>

#include "platform/linux/printing/highest_resident.h"
#include "platform/printing/sample_documents.h"
#include "platform/temporary_folder.h"

namespace tellaxis::platform {
namespace {

void put(std::string& bytes, std::int64_t number, int length) {
  for (int i = 0; i < length; ++i) bytes += static_cast<char>(number >> (8 * i));
}

/// What a BMP's header says, and the bytes behind it.
struct Kind {
  const char* name;
  int width = 4;
  int height = 2;
  int bits = 24;
  int compression = 0;
  std::string palette;
  std::string pixels;
};

std::string fileOf(const Kind& kind) {
  std::string bytes = "BM";
  const auto pixelsAt = static_cast<int>(54 + kind.palette.size());
  put(bytes, pixelsAt + static_cast<int>(kind.pixels.size()), 4);
  put(bytes, 0, 4);
  put(bytes, pixelsAt, 4);
  put(bytes, 40, 4);
  put(bytes, kind.width, 4);
  put(bytes, kind.height, 4);
  put(bytes, 1, 2);
  put(bytes, kind.bits, 2);
  put(bytes, kind.compression, 4);
  for (int i = 0; i < 5; ++i) put(bytes, 0, 4);
  return bytes + kind.palette + kind.pixels;
}

using namespace std::string_literals;

/// Black and red, the rest white.
std::string palette(int colors) {
  std::string palette = "\0\0\0\0"s + "\0\0\xFF\0"s;
  while (palette.size() < static_cast<std::size_t>(colors) * 4) palette += "\xFF\xFF\xFF\0"s;
  return palette;
}

/// All show the same picture: the first pixel of the upper row black, the second red, everything else white.
std::vector<Kind> allKinds() {
  const std::string black = "\0\0\0"s;
  const std::string red = "\0\0\xFF"s;
  const std::string white = "\xFF\xFF\xFF"s;
  const std::string upper24 = black + red + white + white;
  const std::string lower24 = white + white + white + white;
  const std::string upper32 = black + "\0"s + red + "\0"s + white + "\0"s + white + "\0"s;
  const std::string lower32 = white + "\0"s + white + "\0"s + white + "\0"s + white + "\0"s;
  const std::string upper16 = "\x00\x00\x00\x7C\xFF\x7F\xFF\x7F"s;
  const std::string lower16 = "\xFF\x7F\xFF\x7F\xFF\x7F\xFF\x7F"s;
  const std::string masks565 = "\x00\xF8\0\0\xE0\x07\0\0\x1F\x00\0\0"s;
  return {
      {"24 bits", 4, 2, 24, 0, "", lower24 + upper24},
      {"24 bits from the top", 4, -2, 24, 0, "", upper24 + lower24},
      {"32 bits", 4, 2, 32, 0, "", lower32 + upper32},
      {"16 bits", 4, 2, 16, 0, "", lower16 + upper16},
      {"16 bits with masks", 4, 2, 16, 3, masks565,
       "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x00\x00\x00\xF8\xFF\xFF\xFF\xFF"s},
      {"8 bits", 4, 2, 8, 0, palette(256), "\x02\x02\x02\x02\x00\x01\x02\x02"s},
      {"4 bits", 4, 2, 4, 0, palette(16), "\x22\x22\0\0\x01\x22\0\0"s},
      {"8 bits in runs", 4, 2, 8, 1, palette(256), "\x04\x02\0\0\x01\x00\x01\x01\x02\x02\0\0\0\x01"s},
      {"8 bits in runs, a part of them as they are", 4, 2, 8, 1, palette(256),
       "\x04\x02\0\0\0\x04\x00\x01\x02\x02\0\0\0\x01"s},
      {"4 bits in runs", 4, 2, 4, 2, palette(16), "\x04\x22\0\0\x02\x01\x02\x22\0\0\0\x01"s},
  };
}

Bitmap read(const std::string& bytes, const char* name) {
  auto result = readBitmap(bytes);
  const auto* error = std::get_if<BitmapError>(&result);
  EXPECT_EQ(error, nullptr) << name << ": " << (error != nullptr ? error->reason : "");
  return error == nullptr ? std::get<Bitmap>(std::move(result)) : Bitmap();
}

std::vector<int> pixel(const Bitmap& bitmap, int x, int y) {
  const auto at = (static_cast<std::size_t>(y) * bitmap.width + x) * 3;
  return {bitmap.pixels[at], bitmap.pixels[at + 1], bitmap.pixels[at + 2]};
}

TEST(BitmapFile, ReadsEveryKind) {
  for (const Kind& kind : allKinds()) {
    const Bitmap bitmap = read(fileOf(kind), kind.name);
    ASSERT_EQ(bitmap.width, 4) << kind.name;
    ASSERT_EQ(bitmap.height, 2) << kind.name;
    ASSERT_EQ(bitmap.pixels.size(), 24U) << kind.name;
    EXPECT_THAT(pixel(bitmap, 0, 0), testing::ElementsAre(0, 0, 0)) << kind.name;
    EXPECT_THAT(pixel(bitmap, 1, 0), testing::ElementsAre(255, 0, 0)) << kind.name;
    for (const auto& [x, y] : {std::pair{2, 0}, {3, 0}, {0, 1}, {1, 1}, {2, 1}, {3, 1}})
      EXPECT_THAT(pixel(bitmap, x, y), testing::ElementsAre(255, 255, 255)) << kind.name << " " << x << "," << y;
  }
}

TEST(BitmapFile, ReadsOneBit) {
  const std::string blackAndWhite = "\0\0\0\0"s + "\xFF\xFF\xFF\0"s;
  const Bitmap bitmap = read(fileOf({"1 bit", 4, 2, 1, 0, blackAndWhite, "\xF0\0\0\0"s + "\x70\0\0\0"s}), "1 bit");
  ASSERT_EQ(bitmap.pixels.size(), 24U);
  EXPECT_THAT(pixel(bitmap, 0, 0), testing::ElementsAre(0, 0, 0));
  EXPECT_THAT(pixel(bitmap, 1, 0), testing::ElementsAre(255, 255, 255));
  EXPECT_THAT(pixel(bitmap, 0, 1), testing::ElementsAre(255, 255, 255));
}

TEST(BitmapFile, ReadsTheOldShortHeader) {
  std::string bytes = "BM";
  put(bytes, 26 + 8, 4);
  put(bytes, 0, 4);
  put(bytes, 26, 4);
  put(bytes, 12, 4);
  put(bytes, 2, 2);
  put(bytes, 1, 2);
  put(bytes, 1, 2);
  put(bytes, 24, 2);
  bytes += "\0\0\0"s + "\xFF\xFF\xFF"s + "\0\0"s;
  const Bitmap bitmap = read(bytes, "short header");
  EXPECT_EQ(bitmap.width, 2);
  EXPECT_THAT(pixel(bitmap, 0, 0), testing::ElementsAre(0, 0, 0));
}

TEST(BitmapFile, RefusesEveryKindCutShort) {
  for (const Kind& kind : allKinds()) {
    const std::string bytes = fileOf(kind);
    for (std::size_t length = 0; length + 4 < bytes.size(); ++length)
      EXPECT_TRUE(std::holds_alternative<BitmapError>(readBitmap(bytes.substr(0, length))))
          << kind.name << " " << length;
  }
}

TEST(BitmapFile, RefusesALogoCutShort) {
  const std::string logo = test::logoBitmap();
  EXPECT_TRUE(std::holds_alternative<BitmapError>(readBitmap(std::string_view(logo).substr(0, logo.size() / 2))));
}

TEST(BitmapFile, ReservesNoMemoryForSizesThatTheFileCannotHold) {
  for (const int compression : {0, 1, 2, 3})
    for (const int bits : {1, 4, 8, 16, 24, 32})
      for (const auto& [width, height] : {std::pair{30'000, 30'000},
                                          {0x7FFFFFFF, 0x7FFFFFFF},
                                          {0x7FFFFFFF, 1},
                                          {1, 0x7FFFFFFF},
                                          {4, static_cast<int>(0x80000000)},
                                          {-4, 2},
                                          {0, 0}}) {
        test::forgetHighestResident();
        const long before = test::highestResident();
        const Kind kind{"huge", width, height, bits, compression, palette(256), std::string(1000, '\1')};
        EXPECT_TRUE(std::holds_alternative<BitmapError>(readBitmap(fileOf(kind))))
            << width << "x" << height << " " << bits << " " << compression;
        EXPECT_LT(test::highestResident() - before, 4096);
      }
}

TEST(BitmapFile, ReservesNoMemoryForAPaletteThatTheFileCannotHold) {
  std::string bytes = fileOf({"palette", 4, 2, 8, 0, palette(256), std::string(8, '\0')});
  for (int i = 46; i < 50; ++i) bytes[i] = '\x7F';
  test::forgetHighestResident();
  const long before = test::highestResident();
  EXPECT_TRUE(std::holds_alternative<BitmapError>(readBitmap(bytes)));
  EXPECT_LT(test::highestResident() - before, 4096);
}

TEST(BitmapFile, RefusesWhatIsNoBitmap) {
  for (const std::string& bytes :
       {""s, "B"s, "BM"s, std::string(100, '\0'), "PNG"s + std::string(100, 'x'), "BM"s + std::string(100, '\xFF')})
    EXPECT_TRUE(std::holds_alternative<BitmapError>(readBitmap(bytes)));
  EXPECT_TRUE(
      std::holds_alternative<BitmapError>(readBitmap(fileOf({"odd depth", 4, 2, 7, 0, "", std::string(100, 'x')}))));
}

TEST(BitmapFile, DamageNeverDoesMoreThanRefuseOrMisread) {
  std::mt19937 random(20261121);
  for (const Kind& kind : allKinds()) {
    const std::string whole = fileOf(kind);
    for (int round = 0; round < 300; ++round) {
      std::string bytes = whole;
      for (int i = 0; i < 3; ++i) bytes[random() % bytes.size()] = static_cast<char>(random());
      const auto result = readBitmap(bytes);
      const auto* bitmap = std::get_if<Bitmap>(&result);
      EXPECT_TRUE(bitmap == nullptr || bitmap->pixels.size() == std::size_t{3} * bitmap->width * bitmap->height);
    }
  }
}

TEST(BitmapFile, AMissingFileIsRefused) {
  const test::TemporaryFolder folder;
  EXPECT_TRUE(std::holds_alternative<BitmapError>(readBitmapFile(folder / "none.bmp")));
  EXPECT_TRUE(std::holds_alternative<BitmapError>(readBitmapFile(folder / "")));
  EXPECT_TRUE(std::holds_alternative<Bitmap>(readBitmapFile(folder.write("logo.bmp", test::logoBitmap()))));
}

}  // namespace
}  // namespace tellaxis::platform
