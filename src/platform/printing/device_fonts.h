// Device fonts: what a font name promises on paper, for drawn pages and for receipt-printer commands alike.
#pragma once

#include <cstdint>
#include <string_view>

namespace tellaxis::platform {

enum class FontKind : std::uint8_t {
  device,   ///< the printer's own letters, in cells of one width
  outline,  ///< a font of the computer at its size in points
  control,  ///< letters that are commands
  barCode,  ///< digits that become an EAN-13
};

/// The printer's two letter shapes: A is the larger one.
enum class Face : std::uint8_t { a, b };

/// One row of the font table.
struct DeviceFont {
  std::string_view name;
  FontKind kind = FontKind::device;
  Face face = Face::a;
  int pitch = 0;          ///< characters an inch; 0: as many on a line as the printer has columns for the face
  int width = 1;          ///< multiple of the normal width
  int height = 1;         ///< multiple of the normal height
  double normalSize = 0;  ///< points at which `height` holds, more points making it higher; 0: the size is ignored
};

/// A font as it is to be printed at a size.
struct PrintedFont {
  FontKind kind = FontKind::device;
  Face face = Face::a;
  int pitch = 0;
  int width = 1;   ///< 1 to 8
  int height = 1;  ///< 1 to 8
};

/// What prints for the font `name` at `size` points. Names are compared without regard to case; those that the table
/// lacks but that are built like a device font's name ("FontB22", "FontA2x1") say their scale themselves, and all
/// others are fonts of the computer.
PrintedFont printedFont(std::string_view name, double size);

/// What one letter of the control font does.
enum class ControlAction : std::uint8_t { nothing, lineFeed, cut, left, centre, right, digitsBelow };

ControlAction controlAction(char letter);

}  // namespace tellaxis::platform
