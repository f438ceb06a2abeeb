// Bitmap: reducing pixels to black dots.
#include "platform/printing/bitmap.h"

#include <algorithm>

namespace tellaxis::platform {

namespace {

constexpr int white = 255;
constexpr int threshold = 128;

/// Brightness of a pixel as the eye weighs colours, 0 to 255.
int brightness(const std::uint8_t* pixel) { return (pixel[0] * 299 + pixel[1] * 587 + pixel[2] * 114) / 1000; }

/// The mean brightness of the pixels that dot (x, y) stands for.
int meanBrightness(const Bitmap& bitmap, int x, int y, int width, int height) {
  const auto range = [](int index, int dots, int pixels) {
    const int from = static_cast<int>(std::int64_t{index} * pixels / dots);
    const int to = static_cast<int>((std::int64_t{index} + 1) * pixels / dots);
    return std::pair(from, std::max(from + 1, to));
  };
  const auto [left, right] = range(x, width, bitmap.width);
  const auto [top, bottom] = range(y, height, bitmap.height);
  std::int64_t sum = 0;
  for (int row = top; row < bottom; ++row)
    for (int column = left; column < right; ++column)
      sum += brightness(&bitmap.pixels[(static_cast<std::size_t>(row) * bitmap.width + column) * 3]);
  return static_cast<int>(sum / (std::int64_t{bottom - top} * (right - left)));
}

}  // namespace

bool Dots::at(int x, int y) const {
  return (rows[static_cast<std::size_t>(y) * rowBytes() + static_cast<std::size_t>(x) / 8] & (0x80U >> (x % 8))) != 0;
}

Dots dotsOf(const Bitmap& bitmap, int greatestWidth) {
  Dots dots{.width = std::min(bitmap.width, greatestWidth)};
  dots.height = static_cast<int>(std::max<std::int64_t>(1, std::int64_t{bitmap.height} * dots.width / bitmap.width));
  dots.rows.resize(dots.rowBytes() * dots.height);
  // What a dot is too bright or too dark is passed on to its neighbours to the right and below.
  std::vector<int> error(static_cast<std::size_t>(dots.width) + 2);
  std::vector<int> errorBelow(error.size());
  for (int y = 0; y < dots.height; ++y) {
    std::fill(errorBelow.begin(), errorBelow.end(), 0);
    for (int x = 0; x < dots.width; ++x) {
      const auto here = static_cast<std::size_t>(x) + 1;
      const int wanted = meanBrightness(bitmap, x, y, dots.width, dots.height) + error[here] / 16;
      const bool black = wanted < threshold;
      std::uint8_t& eight = dots.rows[y * dots.rowBytes() + static_cast<std::size_t>(x) / 8];
      if (black) eight = static_cast<std::uint8_t>(eight | (0x80U >> (x % 8)));
      const int missing = wanted - (black ? 0 : white);
      error[here + 1] += missing * 7;
      errorBelow[here - 1] += missing * 3;
      errorBelow[here] += missing * 5;
      errorBelow[here + 1] += missing;
    }
    error.swap(errorBelow);
  }
  return dots;
}

}  // namespace tellaxis::platform
