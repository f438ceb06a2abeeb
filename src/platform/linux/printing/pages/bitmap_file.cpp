// Bitmap file: the header is checked here, the pixels are read by gdk-pixbuf.
#include "platform/linux/printing/pages/bitmap_file.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace tellaxis::platform {

namespace {

constexpr std::size_t fileHeaderSize = 14;
constexpr std::uint32_t oldHeaderSize = 12;
constexpr std::size_t greatestFile = 64U * 1024 * 1024;
constexpr std::int64_t mostPixels = 16 * 1024 * 1024;
constexpr std::int64_t greatestSide = 32'767;
constexpr std::uint32_t mostColors = 256;

/// How a BMP holds its pixels; the numbers are those of the format.
enum class Compression : std::uint32_t { none = 0, runs8 = 1, runs4 = 2, masks = 3, alphaMasks = 6 };

/// What the header promises.
struct Header {
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::uint32_t bits = 0;
  Compression compression = Compression::none;
  std::uint32_t colors = 0;  ///< in the palette; 0: as many as there can be
  std::uint32_t pixelsAt = 0;
};

class LittleEndian {
 public:
  explicit LittleEndian(std::string_view bytes) : bytes_(bytes) {}
  std::uint32_t at(std::size_t offset, int length) const {
    std::uint32_t number = 0;
    for (int i = length - 1; i >= 0; --i) number = (number << 8U) | static_cast<std::uint8_t>(bytes_[offset + i]);
    return number;
  }

 private:
  std::string_view bytes_;
};

std::optional<Header> headerOf(std::string_view bytes) {
  if (bytes.size() < fileHeaderSize + oldHeaderSize || !bytes.starts_with("BM")) return std::nullopt;
  const LittleEndian file(bytes);
  const std::uint32_t headerSize = file.at(fileHeaderSize, 4);
  Header header{.pixelsAt = file.at(10, 4)};
  if (headerSize == oldHeaderSize) {
    header.width = file.at(18, 2);
    header.height = file.at(20, 2);
    header.bits = file.at(24, 2);
    return header;
  }
  if (headerSize < 40 || bytes.size() < fileHeaderSize + headerSize) return std::nullopt;
  header.width = static_cast<std::int32_t>(file.at(18, 4));
  header.height = std::llabs(static_cast<std::int32_t>(file.at(22, 4)));
  header.bits = file.at(28, 2);
  header.compression = static_cast<Compression>(file.at(30, 4));
  header.colors = file.at(46, 4);
  return header;
}

/// True when pixels in runs go on to the end of the picture; gdk-pixbuf takes fewer without a word.
bool runsAreWhole(std::string_view bytes, const Header& header) {
  const bool inHalves = header.compression == Compression::runs4;
  const auto byteAt = [&](std::size_t at) { return static_cast<std::uint8_t>(bytes[at]); };
  std::int64_t x = 0;
  std::int64_t y = 0;
  for (std::size_t at = header.pixelsAt; y < header.height && (y + 1 < header.height || x < header.width);) {
    if (bytes.size() - at < 2) return false;
    const std::uint8_t count = byteAt(at);
    const std::uint8_t value = byteAt(at + 1);
    at += 2;
    if (count > 0) {
      x += count;
    } else if (value == 0) {
      x = 0;
      ++y;
    } else if (value == 1) {
      return true;
    } else if (value == 2) {
      if (bytes.size() - at < 2) return false;
      x += byteAt(at);
      y += byteAt(at + 1);
      at += 2;
    } else {
      const std::size_t length = inHalves ? (value + 1U) / 2 : value;
      const std::size_t padded = (length + 1) / 2 * 2;
      if (bytes.size() - at < padded) return false;
      x += value;
      at += padded;
    }
  }
  return true;
}

/// True when the file has the pixels that its header promises.
bool holdsAll(std::string_view bytes, const Header& header) {
  if (header.width <= 0 || header.height <= 0 || header.pixelsAt >= bytes.size()) return false;
  const auto available = static_cast<std::int64_t>(bytes.size() - header.pixelsAt);
  switch (header.compression) {
    case Compression::none:
    case Compression::masks:
    case Compression::alphaMasks: {
      const std::int64_t rowBytes = (header.width * header.bits + 31) / 32 * 4;
      // The last row's padding is sometimes left out.
      return rowBytes * header.height - 3 <= available;
    }
    case Compression::runs8:
    case Compression::runs4: return header.width * header.height <= available * 255 && runsAreWhole(bytes, header);
  }
  return false;
}

bool isSensible(const Header& header) {
  const bool knownDepth = header.bits == 1 || header.bits == 4 || header.bits == 8 || header.bits == 16 ||
                          header.bits == 24 || header.bits == 32;
  return knownDepth && header.colors <= mostColors && header.width <= greatestSide && header.height <= greatestSide &&
         header.width * header.height <= mostPixels;
}

struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
};

/// Pixels on white paper.
Bitmap onWhite(const GdkPixbuf* pixbuf) {
  Bitmap bitmap{.width = gdk_pixbuf_get_width(pixbuf), .height = gdk_pixbuf_get_height(pixbuf)};
  const int channels = gdk_pixbuf_get_n_channels(pixbuf);
  const int stride = gdk_pixbuf_get_rowstride(pixbuf);
  const bool hasAlpha = gdk_pixbuf_get_has_alpha(pixbuf) != 0;
  const guint8* rows = gdk_pixbuf_read_pixels(pixbuf);
  bitmap.pixels.reserve(std::size_t{3} * bitmap.width * bitmap.height);
  for (int y = 0; y < bitmap.height; ++y) {
    const guint8* pixel = rows + std::ptrdiff_t{y} * stride;
    for (int x = 0; x < bitmap.width; ++x, pixel += channels) {
      const int alpha = hasAlpha ? pixel[3] : 255;
      for (int part = 0; part < 3; ++part)
        bitmap.pixels.push_back(static_cast<std::uint8_t>((pixel[part] * alpha + 255 * (255 - alpha)) / 255));
    }
  }
  return bitmap;
}

}  // namespace

std::variant<Bitmap, BitmapError> readBitmap(std::string_view bytes) {
  const auto header = headerOf(bytes);
  if (!header) return BitmapError{"non \xE8 un'immagine BMP"};
  if (!isSensible(*header)) return BitmapError{"immagine di un tipo che non si pu\xF2 stampare"};
  if (!holdsAll(bytes, *header)) return BitmapError{"immagine danneggiata"};
  const std::unique_ptr<GdkPixbufLoader, Unref> loader(gdk_pixbuf_loader_new_with_type("bmp", nullptr));
  if (!loader) return BitmapError{"manca la lettura delle immagini BMP"};
  const auto* data = reinterpret_cast<const guchar*>(bytes.data());
  const bool written = gdk_pixbuf_loader_write(loader.get(), data, bytes.size(), nullptr) != 0;
  const bool closed = gdk_pixbuf_loader_close(loader.get(), nullptr) != 0;
  const GdkPixbuf* pixbuf = gdk_pixbuf_loader_get_pixbuf(loader.get());
  if (!written || !closed || pixbuf == nullptr) return BitmapError{"immagine danneggiata"};
  return onWhite(pixbuf);
}

std::variant<Bitmap, BitmapError> readBitmapFile(const std::string& path) {
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  const std::unique_ptr<std::FILE, Close> file(std::fopen(path.c_str(), "rb"));
  if (!file) return BitmapError{"il file non si pu\xF2 leggere"};
  std::string bytes;
  std::vector<char> block(64 * 1024);
  while (const std::size_t got = std::fread(block.data(), 1, block.size(), file.get())) {
    bytes.append(block.data(), got);
    if (bytes.size() > greatestFile) return BitmapError{"immagine troppo grande"};
  }
  if (std::ferror(file.get()) != 0) return BitmapError{"il file non si pu\xF2 leggere"};
  return readBitmap(bytes);
}

}  // namespace tellaxis::platform
