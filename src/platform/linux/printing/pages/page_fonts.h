// Page fonts: the letters of the computer's fonts, one by one, for code page 1252.
#pragma once

#include <cairo.h>

#include <array>
#include <map>
#include <memory>

#include "platform/printing/pages/typefaces.h"

namespace tellaxis::platform {

/// The letters of a typeface.
struct Letters {
  struct Release {
    void operator()(cairo_font_face_t* fontFace) const { cairo_font_face_destroy(fontFace); }
  };

  std::unique_ptr<cairo_font_face_t, Release> face;
  std::array<unsigned long, 256> glyphs{};  ///< by byte of the code page
  LetterMeasures measures;
};

/// Typefaces that were used before are kept, up to a bound.
class Typefaces final : public TypefaceMeasures {
 public:
  const Letters& letters(const Typeface& typeface);
  const LetterMeasures& measures(const Typeface& typeface) override { return letters(typeface).measures; }

  /// Finds every typeface anew. A font file that could not be opened for a moment would stay unusable otherwise.
  void forget();

 private:
  std::map<Typeface, std::unique_ptr<Letters>> known_;
};

}  // namespace tellaxis::platform
