// Pictures of Windows: LoadImage and StretchDIBits.
#include "platform/windows/printing/pictures.h"

#include <vector>

#include "platform/windows/kernel/native.h"
#include "platform/windows/printing/gdi_objects.h"

namespace tellaxis::platform {

namespace {

constexpr int pixelsPerInch = 96;

BitmapHandle load(std::string_view file) {
  return BitmapHandle(static_cast<HBITMAP>(
      LoadImageW(nullptr, wide(file).c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE | LR_CREATEDIBSECTION)));
}

/// Any kind of bitmap as 24 bits a pixel: blue, green, red; lines padded to four bytes, the lowest line first.
struct Pixels {
  BITMAPINFO format = {};
  std::vector<char> bytes;

  int width() const { return static_cast<int>(format.bmiHeader.biWidth); }
  int height() const { return static_cast<int>(format.bmiHeader.biHeight); }
  std::size_t lineSize() const { return (static_cast<std::size_t>(format.bmiHeader.biWidth) * 3 + 3) / 4 * 4; }
};

/// Nothing when the file cannot be read; the last error says why.
std::optional<Pixels> pixelsOf(std::string_view file) {
  const BitmapHandle bitmap = load(file);
  BITMAP information;
  if (!bitmap || GetObjectW(bitmap.get(), sizeof information, &information) == 0) return std::nullopt;
  Pixels pixels;
  pixels.format.bmiHeader.biSize = sizeof pixels.format.bmiHeader;
  pixels.format.bmiHeader.biWidth = information.bmWidth;
  pixels.format.bmiHeader.biHeight = information.bmHeight;
  pixels.format.bmiHeader.biPlanes = 1;
  pixels.format.bmiHeader.biBitCount = 24;
  pixels.format.bmiHeader.biCompression = BI_RGB;
  pixels.bytes.resize(pixels.lineSize() * static_cast<std::size_t>(information.bmHeight));
  const DeviceContext memory(CreateCompatibleDC(nullptr));
  if (GetDIBits(memory.get(), bitmap.get(), 0, static_cast<UINT>(information.bmHeight), pixels.bytes.data(),
                &pixels.format, DIB_RGB_COLORS) == 0)
    return std::nullopt;
  return pixels;
}

int stretched(LONG pixels, int resolution) { return MulDiv(static_cast<int>(pixels), resolution, pixelsPerInch); }

}  // namespace

std::optional<Picture> readPicture(std::string_view file, Trace& trace) {
  const BitmapHandle bitmap = load(file);
  BITMAP information;
  if (!bitmap || GetObjectW(bitmap.get(), sizeof information, &information) == 0) {
    failed(trace, "LoadPicture", file);
    return std::nullopt;
  }
  return Picture{std::string(file), static_cast<int>(information.bmWidth), static_cast<int>(information.bmHeight)};
}

std::optional<Bitmap> readPixels(std::string_view file, Trace& trace) {
  const auto loaded = pixelsOf(file);
  if (!loaded) {
    failed(trace, "LoadPicture", file);
    return std::nullopt;
  }
  const auto width = static_cast<std::size_t>(loaded->width());
  const auto height = static_cast<std::size_t>(loaded->height());
  Bitmap bitmap{loaded->width(), loaded->height(), {}};
  bitmap.pixels.reserve(width * height * 3);
  for (std::size_t y = height; y-- > 0;)
    for (std::size_t x = 0; x < width; ++x)
      for (std::size_t part = 3; part-- > 0;)
        bitmap.pixels.push_back(static_cast<std::uint8_t>(loaded->bytes[y * loaded->lineSize() + x * 3 + part]));
  return bitmap;
}

bool paintPicture(HDC context, const Picture& picture, int x, int y) {
  const auto loaded = pixelsOf(picture.file);
  if (!loaded) return false;
  SetStretchBltMode(context, COLORONCOLOR);
  return StretchDIBits(context, x, y, stretched(loaded->width(), GetDeviceCaps(context, LOGPIXELSX)),
                       stretched(loaded->height(), GetDeviceCaps(context, LOGPIXELSY)), 0, 0, loaded->width(),
                       loaded->height(), loaded->bytes.data(), &loaded->format, DIB_RGB_COLORS, SRCCOPY) > 0;
}

}  // namespace tellaxis::platform
