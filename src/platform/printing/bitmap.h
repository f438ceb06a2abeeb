// Bitmap: a picture as pixels, and reducing it to the black dots of a receipt printer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace tellaxis::platform {

/// Rows from the top, three bytes a pixel: red, green, blue. What was transparent is white.
struct Bitmap {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> pixels;
};

/// Reads a bitmap file (a path of the program); nothing on a failure, which is reported to the trace.
using BitmapReader = std::function<std::optional<Bitmap>(std::string_view file)>;

/// Black dots in rows from the top, eight to a byte, the leftmost in the highest bit.
struct Dots {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> rows;

  std::size_t rowBytes() const { return (static_cast<std::size_t>(width) + 7) / 8; }
  bool at(int x, int y) const;
};

/// Shades become patterns of dots; a picture wider than `greatestWidth` is made smaller.
Dots dotsOf(const Bitmap& bitmap, int greatestWidth);

}  // namespace tellaxis::platform
