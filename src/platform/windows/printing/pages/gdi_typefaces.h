// GDI typefaces: the computer's fonts, measured as they are and made in the sizes of a page.
#pragma once

#include <map>
#include <string>
#include <tuple>

#include "platform/printing/pages/typefaces.h"
#include "platform/windows/printing/gdi_objects.h"

namespace tellaxis::platform {

/// Letters that have to fit: their height from the highest to the lowest in dots, and their width where all have the
/// same.
struct LetterSize {
  int height = 0;
  double width = 0;  ///< 0: each letter's own

  auto operator<=>(const LetterSize&) const = default;
};

/// Typefaces that were used before are kept, up to a bound.
class GdiTypefaces final : public TypefaceMeasures {
 public:
  const LetterMeasures& measures(const Typeface& typeface) override { return known(typeface).measures; }

  /// Selects a font into `context`, where it stays until the next one; false when the system has none to give.
  bool select(HDC context, const Typeface& typeface, const LetterSize& size);

 private:
  struct Known {
    std::wstring family;
    LetterMeasures measures;
    double averageWidth = 0;  ///< of its letters as the system takes it, at size 1
  };

  const Known& known(const Typeface& typeface);
  Known load(const Typeface& typeface);

  DeviceContext context_{CreateCompatibleDC(nullptr)};
  std::map<Typeface, Known> known_;
  std::map<std::pair<Typeface, LetterSize>, FontHandle> fonts_;
};

}  // namespace tellaxis::platform
