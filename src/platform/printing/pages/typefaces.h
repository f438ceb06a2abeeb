// Typefaces: what the layout of a page asks of the computer's fonts.
#pragma once

#include <array>
#include <compare>
#include <string>

namespace tellaxis::platform {

/// The family that stands for a receipt printer's own letters; a system without it takes one like it.
inline constexpr const char* deviceFamily = "Liberation Mono";

/// A font family (code page 1252) in one weight.
struct Typeface {
  std::string family;
  bool bold = false;

  auto operator<=>(const Typeface&) const = default;
};

/// The measures of a typeface at a size of 1.
struct LetterMeasures {
  std::array<double, 256> advances{};  ///< by byte of code page 1252
  double ascent = 0;
  double descent = 0;

  double height() const { return ascent + descent; }
};

/// Measures the computer's fonts. A typeface that the computer lacks is the nearest one that it has.
class TypefaceMeasures {
 public:
  virtual ~TypefaceMeasures() = default;
  virtual const LetterMeasures& measures(const Typeface& typeface) = 0;
};

}  // namespace tellaxis::platform
