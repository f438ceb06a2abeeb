// Page layout: where on the paper the operations of a document come to stand.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/printing/bitmap.h"
#include "platform/printing/device_fonts.h"
#include "platform/printing/document.h"
#include "platform/printing/pages/typefaces.h"
#include "platform/printing/papers.h"

namespace tellaxis::platform {

/// The unit of all lengths on a page: dots of an eighth of a millimetre, as receipt printers have them.
inline constexpr double dotsPerMillimetre = 8;

/// One line's text from its left edge and the top of its cells.
struct PlacedText {
  std::string text;  ///< code page 1252
  Typeface face;
  double x = 0;
  double y = 0;
  double height = 0;     ///< from the top of the highest letters to the bottom of the lowest
  double cellWidth = 0;  ///< of every letter; 0: each letter's own
  Color color;
};

/// A black or white box; bars of a bar code.
struct PlacedBar {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
};

struct PlacedPicture {
  std::shared_ptr<const Bitmap> bitmap;
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
};

/// Where the paper is cut.
struct PlacedCut {
  double y = 0;
};

using Placed = std::variant<PlacedText, PlacedBar, PlacedPicture, PlacedCut>;

/// From where to where on the page an item may reach.
struct Extent {
  double top = 0;
  double bottom = 0;
};

/// The vertical extent of an item, generously: letters may stand out of their cells, and edges take a dot more.
Extent extentOf(const Placed& item);

/// One page with all that stands on it.
struct Page {
  double width = 0;
  double height = 0;
  std::vector<Placed> items;
};

/// Receives each page as soon as it is full.
using PageTaker = std::function<void(Page page)>;

/// Fills one page after the other. Text that is wider than a roll goes on in the next line; on a form it ends at the
/// edge. Positions count in twentieths of a point from the top left corner of the printing area.
class PageLayout {
 public:
  PageLayout(const Paper& paper, TypefaceMeasures& typefaces, BitmapReader readBitmap, PageTaker takePage);

  void add(const Operation& operation);

  /// Hands over the last page, where anything stands on it or none was handed over yet.
  void finish();

 private:
  /// Letters as they are measured and drawn.
  struct Style {
    Typeface face;
    double height = 0;
    double cellWidth = 0;
    double lineHeight = 0;
  };

  Style styleOf(const PrintStatement& statement, const PrintedFont& font) const;
  void print(const PrintStatement& statement);
  void textLine(std::string_view line, const Style& style, Color color);
  void control(std::string_view letters);
  void barCode(const std::string& digits);
  void digits(std::string_view text, double left, double right);
  void cut();
  void paint(const PaintedPicture& painted);
  void place(Placed item, double bottom);
  void breakPage(double height);
  void handOver();
  double cellWidth(Face face) const;
  double normalHeight() const;
  double normalLine() const;

  const Paper& paper_;
  TypefaceMeasures& typefaces_;
  BitmapReader readBitmap_;
  PageTaker takePage_;
  Page page_;
  bool handedOver_ = false;
  double limit_ = 0;
  double left_ = 0;    ///< of the printing area
  double top_ = 0;     ///< of the printing area
  double x_ = 0;       ///< of the next line, from the printing area's edge
  double y_ = 0;       ///< of the next line, from the paper's edge
  double bottom_ = 0;  ///< of what reaches lowest
  ControlAction alignment_ = ControlAction::left;
  bool digitsBelow_ = false;
};

}  // namespace tellaxis::platform
