// Page drawing: GDI draws each strip of a page into memory, whose bytes are those of the file.
#include "platform/windows/printing/pages/page_drawing.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <vector>

#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

constexpr int stripRows = 256;
/// Nobody looks at more in a window, and one that shows a picture holds all its pixels.
constexpr int mostRows = 20'000;
constexpr int bitsPerPixel = 24;

constexpr COLORREF cutColor = RGB(0x8C, 0x8C, 0x8C);
constexpr int cutDash = 12;
constexpr int cutGap = 8;
constexpr int cutThickness = 2;

int dots(double length) { return static_cast<int>(std::lround(length)); }

/// Rows are padded to four bytes.
std::size_t rowBytes(int width) { return (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4; }

/// The first row is the lowest: the one order that every reader of such files knows.
BITMAPINFOHEADER headerOf(int width, int height) {
  BITMAPINFOHEADER header = {};
  header.biSize = sizeof header;
  header.biWidth = width;
  header.biHeight = height;
  header.biPlanes = 1;
  header.biBitCount = bitsPerPixel;
  header.biCompression = BI_RGB;
  header.biSizeImage = static_cast<DWORD>(rowBytes(width)) * static_cast<DWORD>(height);
  header.biXPelsPerMeter = header.biYPelsPerMeter = static_cast<LONG>(dotsPerMillimetre * 1000);
  return header;
}

/// A few rows of the page in memory, the lowest first.
class Strip {
 public:
  explicit Strip(int width) : width_(width), context_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO information = {};
    information.bmiHeader = headerOf(width, stripRows);
    bitmap_.reset(CreateDIBSection(context_.get(), &information, DIB_RGB_COLORS, &bytes_, nullptr, 0));
    if (bitmap_) before_ = SelectObject(context_.get(), bitmap_.get());
  }
  ~Strip() {
    if (before_ != nullptr) SelectObject(context_.get(), before_);
  }
  Strip(const Strip&) = delete;
  Strip& operator=(const Strip&) = delete;

  bool good() const { return before_ != nullptr; }
  HDC context() const { return context_.get(); }

  void begin(int top) const {
    SetWindowOrgEx(context_.get(), 0, top, nullptr);
    PatBlt(context_.get(), 0, top, width_, stripRows, WHITENESS);
  }

  /// The lowest `count` rows.
  std::string_view rows(int count) const {
    GdiFlush();
    return {static_cast<const char*>(bytes_), rowBytes(width_) * static_cast<std::size_t>(count)};
  }

 private:
  int width_;
  void* bytes_ = nullptr;
  BitmapHandle bitmap_;
  DeviceContext context_;  ///< goes before the bitmap that is selected into it
  HGDIOBJ before_ = nullptr;
};

/// Draws one item; false when the system could not.
struct Drawing {
  HDC context;
  const Page& page;
  GdiTypefaces& typefaces;

  bool operator()(const PlacedText& text) const;
  bool operator()(const PlacedBar& bar) const;
  bool operator()(const PlacedPicture& picture) const;
  bool operator()(const PlacedCut& cut) const;
};

/// Each letter begins at the dot nearest to its place, so that nothing adds up along a line.
bool Drawing::operator()(const PlacedText& text) const {
  const std::wstring letters = wide(text.text);
  const LetterMeasures& measures = typefaces.measures(text.face);
  const double size = text.height / measures.height();
  std::vector<INT> widths;
  double x = text.x;
  for (const char byte : text.text) {
    const double next =
        x + (text.cellWidth > 0 ? text.cellWidth : measures.advances[static_cast<unsigned char>(byte)] * size);
    widths.push_back(dots(next) - dots(x));
    x = next;
  }
  if (!typefaces.select(context, text.face, {std::max(1, dots(text.height)), text.cellWidth})) return false;
  SetBkMode(context, TRANSPARENT);
  SetTextColor(context, RGB(text.color.red, text.color.green, text.color.blue));
  return ExtTextOutW(context, dots(text.x), dots(text.y), 0, nullptr, letters.data(), static_cast<UINT>(letters.size()),
                     widths.data()) != 0;
}

bool Drawing::operator()(const PlacedBar& bar) const {
  return PatBlt(context, dots(bar.x), dots(bar.y), dots(bar.width), dots(bar.height), BLACKNESS) != 0;
}

bool Drawing::operator()(const PlacedPicture& picture) const {
  const Bitmap& bitmap = *picture.bitmap;
  const auto width = static_cast<std::size_t>(bitmap.width);
  const auto height = static_cast<std::size_t>(bitmap.height);
  const std::size_t line = rowBytes(bitmap.width);
  std::vector<std::uint8_t> rows(line * height);
  const std::uint8_t* pixel = bitmap.pixels.data();
  for (std::size_t y = 0; y < height; ++y)
    for (std::size_t x = 0; x < width; ++x, pixel += 3)
      std::reverse_copy(pixel, pixel + 3, rows.data() + (height - 1 - y) * line + x * 3);
  BITMAPINFO information = {};
  information.bmiHeader = headerOf(bitmap.width, bitmap.height);
  SetStretchBltMode(context, picture.width == bitmap.width ? COLORONCOLOR : HALFTONE);
  SetBrushOrgEx(context, 0, 0, nullptr);
  return StretchDIBits(context, dots(picture.x), dots(picture.y), std::max(1, dots(picture.width)),
                       std::max(1, dots(picture.height)), 0, 0, bitmap.width, bitmap.height, rows.data(), &information,
                       DIB_RGB_COLORS, SRCCOPY) != static_cast<int>(GDI_ERROR);
}

bool Drawing::operator()(const PlacedCut& cut) const {
  SetDCBrushColor(context, cutColor);
  auto* brush = static_cast<HBRUSH>(GetStockObject(DC_BRUSH));
  const int y = dots(cut.y) - cutThickness / 2;
  for (int x = 0; x < page.width; x += cutDash + cutGap) {
    const RECT dash = {x, y, x + cutDash, y + cutThickness};
    if (FillRect(context, &dash, brush) == 0) return false;
  }
  return true;
}

bool drawStrip(const Strip& strip, int top, const Page& page, GdiTypefaces& typefaces) {
  strip.begin(top);
  const Drawing drawing{strip.context(), page, typefaces};
  return std::ranges::all_of(page.items, [&](const Placed& item) {
    const Extent extent = extentOf(item);
    return extent.top >= top + stripRows || extent.bottom <= top || std::visit(drawing, item);
  });
}

template <class Header>
void writeHeader(std::ostream& stream, const Header& header) {
  stream.write(reinterpret_cast<const char*>(&header), sizeof header);
}

void writeHeaders(std::ostream& stream, int width, int height) {
  const BITMAPINFOHEADER picture = headerOf(width, height);
  BITMAPFILEHEADER file = {};
  file.bfType = 'B' | 'M' << 8;
  file.bfOffBits = sizeof file + sizeof picture;
  file.bfSize = file.bfOffBits + picture.biSizeImage;
  writeHeader(stream, file);
  writeHeader(stream, picture);
}

}  // namespace

bool writePage(const std::string& path, const Page& page, GdiTypefaces& typefaces) {
  const int width = static_cast<int>(std::ceil(page.width));
  const int height = std::min(static_cast<int>(std::ceil(page.height)), mostRows);
  const Strip strip(width);
  std::ofstream stream(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary);
  if (!strip.good() || !stream) return false;
  writeHeaders(stream, width, height);
  bool drawn = true;
  for (int bottom = height; bottom > 0 && drawn; bottom -= stripRows) {
    drawn = drawStrip(strip, bottom - stripRows, page, typefaces);
    const std::string_view rows = strip.rows(std::min(stripRows, bottom));
    stream.write(rows.data(), static_cast<std::streamsize>(rows.size()));
  }
  // A font must not be in use when it goes.
  SelectObject(strip.context(), GetStockObject(SYSTEM_FONT));
  return drawn && stream.flush().good();
}

}  // namespace tellaxis::platform
