// Page fonts: the letters of the computer's fonts, one by one, for code page 1252.
#pragma once

#include <cairo.h>

#include <array>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace tellaxis::platform {

/// A font family in one weight.
struct Typeface {
  std::string family;
  bool bold = false;

  auto operator<=>(const Typeface&) const = default;
};

/// The letters of a typeface; all measures are for a size of 1.
struct Letters {
  struct Release {
    void operator()(cairo_font_face_t* fontFace) const { cairo_font_face_destroy(fontFace); }
  };

  std::unique_ptr<cairo_font_face_t, Release> face;
  std::array<unsigned long, 256> glyphs{};  ///< by byte of the code page
  std::array<double, 256> advances{};
  double ascent = 0;
  double descent = 0;

  /// Width of `text` at size 1.
  double width(std::string_view text) const;
};

/// Typefaces that were used before are kept, up to a bound.
class Typefaces {
 public:
  const Letters& letters(const Typeface& typeface);

  /// Finds every typeface anew. A font file that could not be opened for a moment would stay unusable otherwise.
  void forget();

 private:
  std::map<Typeface, std::unique_ptr<Letters>> known_;
};

}  // namespace tellaxis::platform
