// Page fonts: finding a font through pango, and its letters through cairo.
#include "platform/linux/printing/pages/page_fonts.h"

#include <pango/pangocairo.h>

#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

/// Size at which letters are measured: large, so that nothing is rounded to dots.
constexpr int measuringSize = 1000;
constexpr std::size_t mostTypefaces = 32;

template <class Object>
struct Unref {
  void operator()(Object* object) const { g_object_unref(object); }
};
template <class Object>
using GObjectPointer = std::unique_ptr<Object, Unref<Object>>;

struct FreeOptions {
  void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
};
struct FreeDescription {
  void operator()(PangoFontDescription* description) const { pango_font_description_free(description); }
};
struct FreeScaled {
  void operator()(cairo_scaled_font_t* font) const { cairo_scaled_font_destroy(font); }
};

std::unique_ptr<cairo_font_options_t, FreeOptions> exactMetrics() {
  std::unique_ptr<cairo_font_options_t, FreeOptions> options(cairo_font_options_create());
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  return options;
}

/// The font that the computer has nearest to `typeface`; null where it has none at all.
GObjectPointer<PangoFont> find(const Typeface& typeface) {
  PangoFontMap* map = pango_cairo_font_map_get_default();
  const GObjectPointer<PangoContext> context(pango_font_map_create_context(map));
  const std::unique_ptr<PangoFontDescription, FreeDescription> description(pango_font_description_new());
  pango_font_description_set_family(description.get(), utf8FromCodePage(typeface.family).c_str());
  pango_font_description_set_weight(description.get(), typeface.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_font_description_set_absolute_size(description.get(), double{measuringSize} * PANGO_SCALE);
  return GObjectPointer<PangoFont>(pango_font_map_load_font(map, context.get(), description.get()));
}

void measure(Letters& letters, cairo_scaled_font_t* scaled) {
  for (int byte = 0; byte < 256; ++byte) {
    std::string text;
    appendUtf8(text, unicodeOf(static_cast<char>(byte)));
    cairo_glyph_t* glyphs = nullptr;
    int count = 0;
    const auto status = cairo_scaled_font_text_to_glyphs(scaled, 0, 0, text.c_str(), static_cast<int>(text.size()),
                                                         &glyphs, &count, nullptr, nullptr, nullptr);
    if (status == CAIRO_STATUS_SUCCESS && count > 0) {
      cairo_text_extents_t extents;
      cairo_scaled_font_glyph_extents(scaled, glyphs, 1, &extents);
      letters.glyphs.at(byte) = glyphs[0].index;
      letters.measures.advances.at(byte) = extents.x_advance / measuringSize;
    }
    cairo_glyph_free(glyphs);
  }
  cairo_font_extents_t extents;
  cairo_scaled_font_extents(scaled, &extents);
  letters.measures.ascent = extents.ascent / measuringSize;
  letters.measures.descent = extents.descent / measuringSize;
}

std::unique_ptr<Letters> load(const Typeface& typeface) {
  auto letters = std::make_unique<Letters>();
  const auto font = find(typeface);
  if (!font) {
    letters->face.reset(cairo_toy_font_face_create("monospace", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL));
  } else {
    auto* scaled = pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(font.get()));
    letters->face.reset(cairo_font_face_reference(cairo_scaled_font_get_font_face(scaled)));
  }
  cairo_matrix_t size;
  cairo_matrix_t identity;
  cairo_matrix_init_scale(&size, measuringSize, measuringSize);
  cairo_matrix_init_identity(&identity);
  const std::unique_ptr<cairo_scaled_font_t, FreeScaled> exact(
      cairo_scaled_font_create(letters->face.get(), &size, &identity, exactMetrics().get()));
  measure(*letters, exact.get());
  return letters;
}

}  // namespace

const Letters& Typefaces::letters(const Typeface& typeface) {
  const auto found = known_.find(typeface);
  if (found != known_.end()) return *found->second;
  if (known_.size() >= mostTypefaces) known_.clear();
  return *(known_[typeface] = load(typeface));
}

void Typefaces::forget() {
  known_.clear();
  pango_cairo_font_map_set_default(nullptr);
}

}  // namespace tellaxis::platform
