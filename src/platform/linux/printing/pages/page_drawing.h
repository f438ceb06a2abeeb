// Page drawing: pages as PDF and as PNG.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>

#include "platform/linux/printing/pages/page_document.h"
#include "platform/linux/printing/pages/page_fonts.h"
#include "platform/printing/pages/page_layout.h"

namespace tellaxis::platform {

/// Draws `page` in dots, white paper included.
void drawPage(cairo_t* cairo, const Page& page, Typefaces& typefaces);

/// A PDF file that grows page by page.
class PdfFile {
 public:
  /// Without a path `take`, which must live as long, gets the bytes.
  PdfFile(const std::string& path, const ByteTaker& take);

  bool add(const Page& page, Typefaces& typefaces);
  bool close();

 private:
  struct Destroy {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  };
  std::unique_ptr<cairo_surface_t, Destroy> surface_;
};

/// Writes `page` as a picture of one pixel a dot. The page is drawn strip by strip, so that its length needs no memory.
bool writePng(const std::string& path, const Page& page, Typefaces& typefaces);

}  // namespace tellaxis::platform
