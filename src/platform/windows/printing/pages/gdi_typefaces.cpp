// GDI typefaces: finding, measuring and making fonts.
#include "platform/windows/printing/pages/gdi_typefaces.h"

#include <algorithm>
#include <cmath>
#include <cwchar>

#include "platform/printing/document.h"
#include "platform/windows/kernel/native.h"
#include "text/code_page.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

/// Size at which letters are measured: large, so that nothing is rounded to dots.
constexpr int measuringSize = 1000;
constexpr std::size_t mostTypefaces = 32;
constexpr std::size_t mostFonts = 64;

/// Families like a receipt printer's letters: of one width, and with strokes that can be seen. The last is on every
/// Windows.
constexpr const wchar_t* deviceFamilies[] = {L"Liberation Mono", L"Lucida Console", L"Courier New"};

/// A height below zero is that of the letters without what accents need.
FontHandle makeFont(const std::wstring& family, bool bold, int height, int width) {
  LOGFONTW wanted = {};
  wanted.lfHeight = height;
  wanted.lfWidth = width;
  wanted.lfWeight = bold ? FW_BOLD : FW_NORMAL;
  wanted.lfCharSet = ANSI_CHARSET;
  wanted.lfOutPrecision = OUT_TT_PRECIS;
  wanted.lfQuality = ANTIALIASED_QUALITY;
  family.copy(wanted.lfFaceName, LF_FACESIZE - 1);
  return FontHandle(CreateFontIndirectW(&wanted));
}

/// Selects a font for as long as it lives.
class Selected {
 public:
  Selected(HDC context, HFONT font) : context_(context), before_(SelectObject(context, font)) {}
  ~Selected() { SelectObject(context_, before_); }
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;

 private:
  HDC context_;
  HGDIOBJ before_;
};

/// Whether the computer has a font of this name; otherwise it would take another.
bool isThere(HDC context, const wchar_t* family) {
  const FontHandle font = makeFont(family, false, -measuringSize, 0);
  const Selected selected(context, font.get());
  wchar_t name[LF_FACESIZE] = {};
  return GetTextFaceW(context, LF_FACESIZE, name) > 0 && _wcsicmp(name, family) == 0;
}

/// Receipts are written for letters of one width; whatever else is missing, the system chooses for it.
std::wstring familyOf(HDC context, const std::string& name) {
  std::wstring family = wide(name);
  const bool isEven = name == deviceFamily || equalIgnoringAsciiCase(name, initialFontName);
  if (!isEven || isThere(context, family.c_str())) return family;
  return *std::find_if(std::begin(deviceFamilies), std::prev(std::end(deviceFamilies)),
                       [&](const wchar_t* one) { return isThere(context, one); });
}

/// Measures of a font that the system will not tell.
LetterMeasures unknownMeasures() {
  LetterMeasures measures{.ascent = 0.8, .descent = 0.2};
  measures.advances.fill(0.6);
  return measures;
}

}  // namespace

GdiTypefaces::Known GdiTypefaces::load(const Typeface& typeface) {
  HDC context = context_.get();
  Known known{familyOf(context, typeface.family), unknownMeasures(), 0};
  const FontHandle font = makeFont(known.family, typeface.bold, -measuringSize, 0);
  const Selected selected(context, font.get());
  TEXTMETRICW metrics;
  if (!GetTextMetricsW(context, &metrics) || metrics.tmHeight <= 0) return known;
  known.measures.ascent = static_cast<double>(metrics.tmAscent) / measuringSize;
  known.measures.descent = static_cast<double>(metrics.tmDescent) / measuringSize;
  known.averageWidth = static_cast<double>(metrics.tmAveCharWidth) / measuringSize;
  for (unsigned byte = 0; byte < known.measures.advances.size(); ++byte) {
    const UINT letter = unicodeOf(static_cast<char>(byte));
    INT width = 0;
    if (GetCharWidth32W(context, letter, letter, &width))
      known.measures.advances.at(byte) = static_cast<double>(width) / measuringSize;
  }
  return known;
}

const GdiTypefaces::Known& GdiTypefaces::known(const Typeface& typeface) {
  const auto found = known_.find(typeface);
  if (found != known_.end()) return found->second;
  if (known_.size() >= mostTypefaces) known_.clear();
  return known_[typeface] = load(typeface);
}

bool GdiTypefaces::select(HDC context, const Typeface& typeface, const LetterSize& size) {
  const std::pair key(typeface, size);
  if (!fonts_.contains(key)) {
    const Known& face = known(typeface);
    const double digit = face.measures.advances['0'];
    const double average = digit > 0 ? size.width * face.averageWidth / digit : 0;
    if (fonts_.size() >= mostFonts) {
      SelectObject(context, GetStockObject(SYSTEM_FONT));
      fonts_.clear();
    }
    fonts_[key] = makeFont(face.family, typeface.bold, size.height, static_cast<int>(std::lround(average)));
  }
  HFONT font = fonts_[key].get();
  return font != nullptr && SelectObject(context, font) != nullptr;
}

}  // namespace tellaxis::platform
