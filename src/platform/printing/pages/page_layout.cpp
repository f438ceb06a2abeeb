// Page layout: where on the paper the operations of a document come to stand.
#include "platform/printing/pages/page_layout.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/printing/pages/bar_code.h"
#include "platform/printing/printed_text.h"

namespace tellaxis::platform {

namespace {

constexpr double dotsPerPoint = dotsPerMillimetre * 25.4 / 72;
constexpr double dotsPerTwip = dotsPerPoint / 20;
constexpr double dotsPerInch = dotsPerMillimetre * 25.4;

constexpr double topMargin = 4 * dotsPerMillimetre;
constexpr double bottomMargin = 6 * dotsPerMillimetre;
constexpr double cutMargin = 3 * dotsPerMillimetre;
constexpr double shortestRoll = 20 * dotsPerMillimetre;
constexpr double longestRoll = 4000 * dotsPerMillimetre;
constexpr double formLine = dotsPerInch / 6;
constexpr std::size_t mostItems = 4000;

/// Heights in proportion to the width of a cell, as the printers' letters have them.
constexpr double letterHeight = 1.9;
constexpr double lineHeight = 1.23;

constexpr double barModule = 3;
constexpr double barHeight = 100;
constexpr double barMargin = 8;
constexpr int guardModules = 3;
constexpr int halfModules = 42;
constexpr int middleModules = 5;

struct ExtentOf {
  Extent operator()(const PlacedText& text) const { return {text.y - text.height / 2, text.y + text.height * 1.5}; }
  Extent operator()(const PlacedBar& bar) const { return {bar.y - 1, bar.y + bar.height + 1}; }
  Extent operator()(const PlacedPicture& picture) const { return {picture.y - 1, picture.y + picture.height + 1}; }
  Extent operator()(const PlacedCut& cut) const { return {cut.y - 2, cut.y + 2}; }
};

}  // namespace

Extent extentOf(const Placed& item) { return std::visit(ExtentOf(), item); }

PageLayout::PageLayout(const Paper& paper, TypefaceMeasures& typefaces, BitmapReader readBitmap, PageTaker takePage)
    : paper_(paper), typefaces_(typefaces), readBitmap_(std::move(readBitmap)), takePage_(std::move(takePage)) {
  left_ = (paper.width - paper.printingWidth) / 2 * dotsPerMillimetre;
  top_ = topMargin;
  limit_ = paper.formLength > 0 ? paper.formLength * dotsPerMillimetre - bottomMargin : longestRoll;
  y_ = bottom_ = top_;
}

void PageLayout::add(const Operation& operation) {
  if (const auto* statement = std::get_if<PrintStatement>(&operation)) {
    print(*statement);
  } else if (const auto* painted = std::get_if<PaintedPicture>(&operation)) {
    paint(*painted);
  } else {
    const Move& move = std::get<Move>(operation);
    if (move.x) x_ = std::clamp(*move.x * dotsPerTwip, 0.0, paper_.printingWidth * dotsPerMillimetre);
    if (move.y) y_ = std::clamp(top_ + *move.y * dotsPerTwip, top_, limit_);
  }
}

void PageLayout::finish() {
  if (!page_.items.empty() || !handedOver_) handOver();
}

/// Begins another page where `height` more does not fit on this one.
void PageLayout::breakPage(double height) {
  const bool isEmpty = page_.items.empty() && y_ <= top_;
  if (!isEmpty && (y_ + height > limit_ || page_.items.size() >= mostItems)) handOver();
}

void PageLayout::handOver() {
  const bool isForm = paper_.formLength > 0;
  page_.width = paper_.width * dotsPerMillimetre;
  page_.height = isForm ? paper_.formLength * dotsPerMillimetre
                        : std::max(shortestRoll, std::ceil(std::max(bottom_, y_) + bottomMargin));
  if (!isForm && !page_.items.empty())
    if (const auto* cut = std::get_if<PlacedCut>(&page_.items.back())) page_.height = std::ceil(cut->y + cutMargin);
  x_ = 0;
  y_ = bottom_ = top_;
  handedOver_ = true;
  takePage_(std::exchange(page_, {}));
}

double PageLayout::cellWidth(Face face) const {
  return paper_.printingWidth * dotsPerMillimetre / (face == Face::a ? paper_.columnsA : paper_.columnsB);
}

/// Height of the letters of face A, and of a line of them.
double PageLayout::normalHeight() const { return cellWidth(Face::a) * letterHeight; }
double PageLayout::normalLine() const { return normalHeight() * lineHeight; }

PageLayout::Style PageLayout::styleOf(const PrintStatement& statement, const PrintedFont& font) const {
  if (font.kind == FontKind::outline) {
    Style style{{statement.font, statement.bold}};
    const LetterMeasures& letters = typefaces_.measures(style.face);
    const double size = std::min(statement.size, 200.0) * dotsPerPoint;
    style.height = style.lineHeight = size * letters.height();
    return style;
  }
  Style style{{deviceFamily, statement.bold}};
  const double cell = font.pitch > 0 ? dotsPerInch / font.pitch : cellWidth(font.face);
  const double height = cell * letterHeight;
  style.cellWidth = font.width * cell;
  style.height = font.height * height;
  style.lineHeight = style.height - height + (paper_.formLength > 0 ? formLine : height * lineHeight);
  return style;
}

void PageLayout::print(const PrintStatement& statement) {
  PrintedFont font = printedFont(statement.font, statement.size);
  if (font.kind == FontKind::control) return control(statement.text);
  if (font.kind == FontKind::barCode) {
    if (const auto digits = ean13(statement.text)) return barCode(*digits);
    font = {};
  }
  const Style style = styleOf(statement, font);
  for (const std::string& line : printedLines(statement.text)) textLine(line, style, statement.color);
}

/// Puts one line down, on a roll as many pieces as it needs.
void PageLayout::textLine(std::string_view line, const Style& style, Color color) {
  // A copy: a page that is full is drawn meanwhile, and its typefaces may take the place of this one.
  const LetterMeasures letters = typefaces_.measures(style.face);
  const double size = style.height / letters.height();
  const double room = paper_.printingWidth * dotsPerMillimetre - x_ + 0.5;
  line = line.substr(0, line.find_last_not_of(' ') + 1);
  do {
    double width = 0;
    std::size_t fits = 0;
    for (; fits < line.size(); ++fits) {
      width += style.cellWidth > 0 ? style.cellWidth : letters.advances[static_cast<unsigned char>(line[fits])] * size;
      if (width > room && fits > 0) break;
    }
    breakPage(style.lineHeight);
    if (fits > 0)
      place(PlacedText{std::string(line.substr(0, fits)), style.face, left_ + x_, y_, style.height, style.cellWidth,
                       color},
            y_ + style.height);
    line.remove_prefix(fits);
    y_ += style.lineHeight;
  } while (!line.empty() && paper_.formLength == 0);
  x_ = 0;
}

void PageLayout::control(std::string_view letters) {
  for (const char letter : letters) {
    switch (const ControlAction action = controlAction(letter); action) {
      case ControlAction::nothing: break;
      case ControlAction::lineFeed:
        breakPage(normalLine());
        y_ += normalLine();
        break;
      case ControlAction::cut: cut(); break;
      case ControlAction::digitsBelow: digitsBelow_ = true; break;
      case ControlAction::left:
      case ControlAction::centre:
      case ControlAction::right: alignment_ = action; break;
    }
  }
}

void PageLayout::cut() {
  breakPage(3 * cutMargin);
  y_ += 2 * cutMargin;
  place(PlacedCut{y_}, y_);
  y_ += cutMargin;
}

/// The driver positions text by itself, so that an alignment of the control font holds for bar codes alone.
void PageLayout::barCode(const std::string& digits) {
  const std::vector<bool> modules = ean13Modules(digits);
  breakPage(barHeight + 2 * barMargin + normalLine());
  const double printingWidth = paper_.printingWidth * dotsPerMillimetre;
  const double width = barModule * static_cast<double>(modules.size());
  const double rest = printingWidth - width;
  const double indent = alignment_ == ControlAction::centre  ? rest / 2
                        : alignment_ == ControlAction::right ? rest
                                                             : cellWidth(Face::a);
  const double x = std::floor(left_ + indent);
  const double y = std::floor(y_ + barMargin);
  for (std::size_t i = 0; i < modules.size(); ++i) {
    std::size_t end = i;
    while (end < modules.size() && modules[end]) ++end;
    const double barWidth = barModule * static_cast<double>(end - i);
    if (end > i) place(PlacedBar{x + barModule * static_cast<double>(i), y, barWidth, barHeight}, y + barHeight);
    i = end;
  }
  y_ = y + barHeight + 2;
  if (digitsBelow_) {
    const double half = halfModules * barModule;
    const double left = x + guardModules * barModule;
    const double right = left + half + middleModules * barModule;
    this->digits(std::string_view(digits).substr(0, 1), x - 2 * cellWidth(Face::a), x);
    this->digits(std::string_view(digits).substr(1, 6), left, left + half);
    this->digits(std::string_view(digits).substr(7), right, right + half);
    y_ += normalLine();
  }
  y_ += barMargin;
}

/// Digits in the middle between `left` and `right`.
void PageLayout::digits(std::string_view text, double left, double right) {
  const double width = cellWidth(Face::a) * static_cast<double>(text.size());
  place(
      PlacedText{
          std::string(text), {deviceFamily}, (left + right - width) / 2, y_, normalHeight(), cellWidth(Face::a), {}},
      y_ + normalHeight());
}

void PageLayout::paint(const PaintedPicture& painted) {
  auto bitmap = readBitmap_ ? readBitmap_(painted.picture.file) : std::nullopt;
  if (!bitmap || bitmap->width <= 0 || bitmap->height <= 0) return;
  const double x = left_ + std::clamp(painted.x * dotsPerTwip, 0.0, paper_.printingWidth * dotsPerMillimetre);
  const double y = std::clamp(top_ + painted.y * dotsPerTwip, top_, limit_);
  const double room = std::max(1.0, left_ + paper_.printingWidth * dotsPerMillimetre - x);
  const double scale = std::min({1.0, room / bitmap->width, longestRoll / bitmap->height});
  const double width = bitmap->width * scale;
  const double height = bitmap->height * scale;
  if (page_.items.size() >= mostItems) handOver();
  place(PlacedPicture{std::make_shared<const Bitmap>(std::move(*bitmap)), x, y, width, height}, y + height);
}

void PageLayout::place(Placed item, double bottom) {
  page_.items.push_back(std::move(item));
  bottom_ = std::max(bottom_, bottom);
}

}  // namespace tellaxis::platform
