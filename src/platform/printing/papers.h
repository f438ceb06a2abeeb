// Papers: what a printer prints on and which commands it knows, found by its name.
#pragma once

#include <cstdint>
#include <string_view>

namespace tellaxis::platform {

/// How a printer takes bitmaps.
enum class Graphics : std::uint8_t {
  raster,  ///< whole rows of dots
  column,  ///< strips of eight rows
};

/// One row of the printer table. Lengths in millimetres.
struct Paper {
  std::string_view namePart;  ///< of the printer's name; empty: every other printer
  double width = 80;
  double printingWidth = 72;
  int columnsA = 42;      ///< letters of face A on the printing width
  int columnsB = 56;      ///< letters of face B
  double formLength = 0;  ///< of one form; 0: a roll, as long as what is printed
  bool cutAtEnd = false;  ///< the paper is cut after every document
  Graphics graphics = Graphics::raster;
  std::uint8_t codePage = 16;  ///< the printer's number of code page 1252
};

/// What the printer named `deviceName` prints on.
const Paper& paperOf(std::string_view deviceName);

}  // namespace tellaxis::platform
