// Pictures of Windows: LoadImage and StretchDIBits.
#include "platform/windows/pictures.h"

#include <memory>
#include <vector>

#include "platform/windows/native.h"

namespace tellaxis::platform::windows {

namespace {

constexpr int pixelsPerInch = 96;

struct BitmapCloser {
  void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using Bitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, BitmapCloser>;

struct ScreenCloser {
  void operator()(HDC context) const { DeleteDC(context); }
};

Bitmap load(std::string_view file) {
  return Bitmap(static_cast<HBITMAP>(
      LoadImageW(nullptr, wide(file).c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE | LR_CREATEDIBSECTION)));
}

int stretched(LONG pixels, int resolution) { return MulDiv(static_cast<int>(pixels), resolution, pixelsPerInch); }

}  // namespace

std::optional<Picture> readPicture(std::string_view file, Trace& trace) {
  const Bitmap bitmap = load(file);
  BITMAP information;
  if (!bitmap || GetObjectW(bitmap.get(), sizeof information, &information) == 0) {
    failed(trace, "LoadPicture", file);
    return std::nullopt;
  }
  return Picture{std::string(file), static_cast<int>(information.bmWidth), static_cast<int>(information.bmHeight)};
}

bool paintPicture(HDC context, const Picture& picture, int x, int y) {
  const Bitmap bitmap = load(picture.file);
  BITMAP information;
  if (!bitmap || GetObjectW(bitmap.get(), sizeof information, &information) == 0) return false;

  // Every kind of bitmap as 24 bits a pixel, lines padded to four bytes, the lowest line first.
  BITMAPINFO format = {};
  format.bmiHeader.biSize = sizeof format.bmiHeader;
  format.bmiHeader.biWidth = information.bmWidth;
  format.bmiHeader.biHeight = information.bmHeight;
  format.bmiHeader.biPlanes = 1;
  format.bmiHeader.biBitCount = 24;
  format.bmiHeader.biCompression = BI_RGB;
  const auto lineSize = (static_cast<std::size_t>(information.bmWidth) * 3 + 3) / 4 * 4;
  std::vector<char> pixels(lineSize * static_cast<std::size_t>(information.bmHeight));
  const std::unique_ptr<std::remove_pointer_t<HDC>, ScreenCloser> memory(CreateCompatibleDC(nullptr));
  if (GetDIBits(memory.get(), bitmap.get(), 0, static_cast<UINT>(information.bmHeight), pixels.data(), &format,
                DIB_RGB_COLORS) == 0)
    return false;
  SetStretchBltMode(context, COLORONCOLOR);
  return StretchDIBits(context, x, y, stretched(information.bmWidth, GetDeviceCaps(context, LOGPIXELSX)),
                       stretched(information.bmHeight, GetDeviceCaps(context, LOGPIXELSY)), 0, 0,
                       static_cast<int>(information.bmWidth), static_cast<int>(information.bmHeight), pixels.data(),
                       &format, DIB_RGB_COLORS, SRCCOPY) > 0;
}

}  // namespace tellaxis::platform::windows
