// Page drawing: cairo draws a page once for PDF and once, in strips, for PNG.
#include "platform/linux/printing/pages/page_drawing.h"

#include <cairo-pdf.h>
#include <png.h>

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

namespace tellaxis::platform {

namespace {

constexpr double pointsPerDot = 72 / 25.4 / dotsPerMillimetre;
constexpr int stripRows = 256;
constexpr int compression = 2;

struct DestroyCairo {
  void operator()(cairo_t* cairo) const { cairo_destroy(cairo); }
};
struct DestroySurface {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using CairoPointer = std::unique_ptr<cairo_t, DestroyCairo>;
using SurfacePointer = std::unique_ptr<cairo_surface_t, DestroySurface>;

struct Drawing {
  cairo_t* cairo;
  const Page& page;
  Typefaces& typefaces;

  void operator()(const PlacedText& text) const;
  void operator()(const PlacedBar& bar) const;
  void operator()(const PlacedPicture& picture) const;
  void operator()(const PlacedCut& cut) const;
};

void Drawing::operator()(const PlacedText& text) const {
  const Letters& letters = typefaces.letters(text.face);
  const LetterMeasures& measures = letters.measures;
  const double size = text.height / measures.height();
  const double stretch = text.cellWidth > 0 ? text.cellWidth / measures.advances['0'] : size;
  std::vector<cairo_glyph_t> glyphs;
  glyphs.reserve(text.text.size());
  double x = text.x;
  const double y = text.y + measures.ascent * size;
  for (const char byte : text.text) {
    const auto index = static_cast<unsigned char>(byte);
    if (byte != ' ') glyphs.push_back({letters.glyphs[index], x, y});
    x += text.cellWidth > 0 ? text.cellWidth : measures.advances[index] * size;
  }
  cairo_matrix_t matrix;
  cairo_matrix_init_scale(&matrix, stretch, size);
  cairo_set_font_face(cairo, letters.face.get());
  cairo_set_font_matrix(cairo, &matrix);
  cairo_set_source_rgb(cairo, text.color.red / 255.0, text.color.green / 255.0, text.color.blue / 255.0);
  cairo_show_glyphs(cairo, glyphs.data(), static_cast<int>(glyphs.size()));
}

void Drawing::operator()(const PlacedBar& bar) const {
  cairo_set_source_rgb(cairo, 0, 0, 0);
  cairo_rectangle(cairo, bar.x, bar.y, bar.width, bar.height);
  cairo_fill(cairo);
}

void Drawing::operator()(const PlacedPicture& picture) const {
  const Bitmap& bitmap = *picture.bitmap;
  const SurfacePointer image(cairo_image_surface_create(CAIRO_FORMAT_RGB24, bitmap.width, bitmap.height));
  if (cairo_surface_status(image.get()) != CAIRO_STATUS_SUCCESS) return;
  cairo_surface_flush(image.get());
  unsigned char* rows = cairo_image_surface_get_data(image.get());
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(image.get()));
  const std::uint8_t* pixel = bitmap.pixels.data();
  for (int y = 0; y < bitmap.height; ++y) {
    for (int x = 0; x < bitmap.width; ++x, pixel += 3) {
      const std::uint32_t color = (std::uint32_t{pixel[0]} << 16U) | (std::uint32_t{pixel[1]} << 8U) | pixel[2];
      std::memcpy(rows + y * stride + std::size_t{4} * x, &color, sizeof color);
    }
  }
  cairo_surface_mark_dirty(image.get());
  cairo_save(cairo);
  cairo_translate(cairo, picture.x, picture.y);
  cairo_scale(cairo, picture.width / bitmap.width, picture.height / bitmap.height);
  cairo_set_source_surface(cairo, image.get(), 0, 0);
  if (picture.width == bitmap.width) cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_NEAREST);
  cairo_paint(cairo);
  cairo_restore(cairo);
}

void Drawing::operator()(const PlacedCut& cut) const {
  constexpr double dash[] = {12, 8};
  cairo_save(cairo);
  cairo_set_source_rgb(cairo, 0.55, 0.55, 0.55);
  cairo_set_line_width(cairo, 1.5);
  cairo_set_dash(cairo, dash, 2, 0);
  cairo_move_to(cairo, 0, cut.y);
  cairo_line_to(cairo, page.width, cut.y);
  cairo_stroke(cairo);
  cairo_restore(cairo);
}

void drawRows(cairo_t* cairo, const Page& page, Typefaces& typefaces, double top, double bottom) {
  cairo_set_source_rgb(cairo, 1, 1, 1);
  cairo_paint(cairo);
  for (const Placed& item : page.items) {
    const auto [from, to] = extentOf(item);
    if (from < bottom && to > top) std::visit(Drawing{cairo, page, typefaces}, item);
  }
}

cairo_status_t passOn(void* taker, const unsigned char* bytes, unsigned length) {
  const bool taken = (*static_cast<const ByteTaker*>(taker))({reinterpret_cast<const char*>(bytes), length});
  return taken ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

[[noreturn]] void leave(png_structp png, png_const_charp /*reason*/) { png_longjmp(png, 1); }
void ignore(png_structp /*png*/, png_const_charp /*reason*/) {}

/// What the writing of a PNG file holds, so that it is released on every way out.
struct PngWriter {
  std::FILE* file = nullptr;
  png_structp png = nullptr;
  png_infop info = nullptr;

  explicit PngWriter(const std::string& path)
      : file(std::fopen(path.c_str(), "wb")),
        png(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, &leave, &ignore)),
        info(png != nullptr ? png_create_info_struct(png) : nullptr) {}
  ~PngWriter() {
    png_destroy_write_struct(&png, &info);
    if (file != nullptr) std::fclose(file);
  }
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;
};

bool writeHeader(PngWriter& writer, int width, int height) {
  if (setjmp(png_jmpbuf(writer.png)) != 0) return false;
  png_init_io(writer.png, writer.file);
  png_set_IHDR(writer.png, writer.info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8,
               PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  const auto dotsPerMetre = static_cast<png_uint_32>(dotsPerMillimetre * 1000);
  png_set_pHYs(writer.png, writer.info, dotsPerMetre, dotsPerMetre, PNG_RESOLUTION_METER);
  png_set_compression_level(writer.png, compression);
  png_set_filter(writer.png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
  png_write_info(writer.png, writer.info);
  return true;
}

bool writeRow(PngWriter& writer, const std::uint8_t* row) {
  if (setjmp(png_jmpbuf(writer.png)) != 0) return false;
  png_write_row(writer.png, row);
  return true;
}

bool writeEnd(PngWriter& writer) {
  if (setjmp(png_jmpbuf(writer.png)) != 0) return false;
  png_write_end(writer.png, nullptr);
  return std::fflush(writer.file) == 0;
}

/// One row of cairo's pixels (four bytes each) as three bytes each.
void narrow(const unsigned char* from, int width, std::vector<std::uint8_t>& row) {
  for (int x = 0; x < width; ++x) {
    std::uint32_t color = 0;
    std::memcpy(&color, from + std::size_t{4} * x, sizeof color);
    row[std::size_t{3} * x] = static_cast<std::uint8_t>(color >> 16U);
    row[std::size_t{3} * x + 1] = static_cast<std::uint8_t>(color >> 8U);
    row[std::size_t{3} * x + 2] = static_cast<std::uint8_t>(color);
  }
}

}  // namespace

void drawPage(cairo_t* cairo, const Page& page, Typefaces& typefaces) {
  drawRows(cairo, page, typefaces, 0, page.height);
}

PdfFile::PdfFile(const std::string& path, const ByteTaker& take)
    : surface_(path.empty() ? cairo_pdf_surface_create_for_stream(&passOn, const_cast<ByteTaker*>(&take), 1, 1)
                            : cairo_pdf_surface_create(path.c_str(), 1, 1)) {}

bool PdfFile::add(const Page& page, Typefaces& typefaces) {
  cairo_pdf_surface_set_size(surface_.get(), page.width * pointsPerDot, page.height * pointsPerDot);
  const CairoPointer cairo(cairo_create(surface_.get()));
  cairo_scale(cairo.get(), pointsPerDot, pointsPerDot);
  drawPage(cairo.get(), page, typefaces);
  cairo_show_page(cairo.get());
  return cairo_status(cairo.get()) == CAIRO_STATUS_SUCCESS;
}

bool PdfFile::close() {
  cairo_surface_finish(surface_.get());
  return cairo_surface_status(surface_.get()) == CAIRO_STATUS_SUCCESS;
}

bool writePng(const std::string& path, const Page& page, Typefaces& typefaces) {
  const int width = static_cast<int>(std::ceil(page.width));
  const int height = static_cast<int>(std::ceil(page.height));
  PngWriter writer(path);
  if (writer.file == nullptr || writer.info == nullptr || !writeHeader(writer, width, height)) return false;
  const SurfacePointer strip(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, stripRows));
  std::vector<std::uint8_t> row(std::size_t{3} * width);
  for (int top = 0; top < height; top += stripRows) {
    const CairoPointer cairo(cairo_create(strip.get()));
    cairo_translate(cairo.get(), 0, -top);
    drawRows(cairo.get(), page, typefaces, top, top + stripRows);
    if (cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS) return false;
    cairo_surface_flush(strip.get());
    const unsigned char* rows = cairo_image_surface_get_data(strip.get());
    const int stride = cairo_image_surface_get_stride(strip.get());
    for (int y = 0; y < std::min(stripRows, height - top); ++y) {
      narrow(rows + std::ptrdiff_t{y} * stride, width, row);
      if (!writeRow(writer, row.data())) return false;
    }
  }
  return writeEnd(writer);
}

}  // namespace tellaxis::platform
