// ESC/POS encoder: fonts, positions, bar codes, pictures and cuts as commands.
#include "platform/printing/escpos_encoder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "platform/printing/printed_text.h"

namespace tellaxis::platform {

namespace {

constexpr char escape = 0x1B;
constexpr char group = 0x1D;
constexpr char lineFeed = '\n';
constexpr char formFeed = '\f';

constexpr int dotsPerLine = 34;
constexpr double twipsPerDot = 1440.0 / 203;
constexpr int greatestFeed = 255;
constexpr int greatestWait = 1000;
constexpr int greatestPosition = 20'000;
constexpr int sliceRows = 255;
constexpr int columnRows = 8;
constexpr int rasterWidth = 576;
constexpr int columnWidth = 200;
constexpr int barCodeHeight = 100;
constexpr int barCodeModule = 3;

void put(std::string& bytes, std::initializer_list<int> values) {
  for (const int value : values) bytes += static_cast<char>(value);
}

int lowByte(int number) { return number & 0xFF; }
int highByte(int number) { return number >> 8; }

bool isRed(Color color) { return color.red >= 128 && color.green < 128 && color.blue < 128; }

/// Whole dots; a hair is added since a quotient that should be whole may come out just below it.
int dotsFrom(double twips) {
  constexpr double hair = 1e-9;
  return static_cast<int>(std::clamp(twips / twipsPerDot + hair, 0.0, double{greatestPosition}));
}

}  // namespace

EscPosEncoder::EscPosEncoder(const Paper& paper, BitmapReader readBitmap)
    : paper_(paper), readBitmap_(std::move(readBitmap)) {}

bool EscPosEncoder::encode(const Operation& operation, std::string& bytes) {
  begin(bytes);
  if (const auto* statement = std::get_if<PrintStatement>(&operation)) {
    print(*statement, bytes);
  } else if (const auto* painted = std::get_if<PaintedPicture>(&operation)) {
    return picture(*painted, bytes);
  } else {
    move(std::get<Move>(operation));
  }
  if (waitingLines_ > greatestWait) feed(bytes);
  return true;
}

void EscPosEncoder::begin(std::string& bytes) {
  if (std::exchange(begun_, true)) return;
  put(bytes, {escape, '@', escape, 't', paper_.codePage});
  if (paper_.formLength > 0) put(bytes, {escape, 'c', '0', 4});
}

void EscPosEncoder::finish(std::string& bytes) {
  begin(bytes);
  if (paper_.formLength > 0) {
    bytes += formFeed;
    return;
  }
  if (!isCut_ && paper_.cutAtEnd)
    cut(bytes);
  else
    feed(bytes);
}

void EscPosEncoder::print(const PrintStatement& statement, std::string& bytes) {
  const PrintedFont font = printedFont(statement.font, statement.size);
  if (font.kind == FontKind::control) return control(statement.text, bytes);
  if (font.kind == FontKind::barCode) {
    if (const auto digits = ean13(statement.text)) return barCode(*digits, bytes);
  }
  const State wanted{font.face == Face::b ? 1 : 0, font.width, font.height, statement.bold, isRed(statement.color)};
  for (const std::string& line : printedLines(statement.text)) textLine(line, wanted, bytes);
}

void EscPosEncoder::control(std::string_view letters, std::string& bytes) {
  for (const char letter : letters) {
    switch (const ControlAction action = controlAction(letter); action) {
      case ControlAction::nothing: break;
      case ControlAction::lineFeed: ++waitingLines_; break;
      case ControlAction::cut: cut(bytes); break;
      case ControlAction::digitsBelow: digitsBelow_ = true; break;
      case ControlAction::left:
      case ControlAction::centre:
      case ControlAction::right: alignment_ = action; break;
    }
  }
}

void EscPosEncoder::barCode(const std::string& digits, std::string& bytes) {
  const int alignment = alignment_ == ControlAction::centre ? 1 : alignment_ == ControlAction::right ? 2 : 0;
  feed(bytes);
  if (alignment != 0) put(bytes, {escape, 'a', alignment});
  put(bytes, {group, 'h', barCodeHeight, group, 'w', barCodeModule, group, 'H', digitsBelow_ ? 2 : 0});
  put(bytes, {group, 'k', 0x43, static_cast<int>(digits.size())});
  bytes += digits;
  if (alignment != 0) put(bytes, {escape, 'a', 0});
  position_ += barCodeHeight + (digitsBelow_ ? dotsPerLine : 0);
  isCut_ = false;
}

void EscPosEncoder::textLine(const std::string& line, const State& wanted, std::string& bytes) {
  const std::size_t length = line.find_last_not_of(' ') + 1;
  if (length == 0) {
    waitingLines_ += wanted.height;
    return;
  }
  feed(bytes);
  setState(wanted, bytes);
  if (leftDots_ > 0) put(bytes, {escape, '$', lowByte(leftDots_), highByte(leftDots_)});
  bytes.append(line, 0, length);
  bytes += lineFeed;
  leftDots_ = 0;
  position_ += dotsPerLine * wanted.height;
  isCut_ = false;
}

void EscPosEncoder::setState(const State& wanted, std::string& bytes) {
  if (paper_.graphics == Graphics::column) {
    const int mode =
        wanted.face | (wanted.bold ? 0x08 : 0) | (wanted.height > 1 ? 0x10 : 0) | (wanted.width > 1 ? 0x20 : 0);
    if (wanted != state_) put(bytes, {escape, '!', mode});
  } else {
    if (wanted.face != state_.face) put(bytes, {escape, 'M', wanted.face});
    if (wanted.width != state_.width || wanted.height != state_.height)
      put(bytes, {group, '!', (wanted.width - 1) * 16 + wanted.height - 1});
    if (wanted.bold != state_.bold) put(bytes, {escape, 'E', wanted.bold ? 1 : 0});
  }
  if (wanted.red != state_.red) put(bytes, {escape, 'r', wanted.red ? 1 : 0});
  state_ = wanted;
}

void EscPosEncoder::move(const Move& move) {
  if (move.x) leftDots_ = dotsFrom(*move.x);
  if (!move.y) return;
  const int ahead = static_cast<int>(std::max<std::int64_t>(0, dotsFrom(*move.y) - position_));
  waitingLines_ = ahead / dotsPerLine;
  waitingDots_ = ahead % dotsPerLine;
}

/// Feeds what waits.
void EscPosEncoder::feed(std::string& bytes) {
  position_ += std::int64_t{waitingLines_} * dotsPerLine + waitingDots_;
  bytes.append(std::exchange(waitingLines_, 0), lineFeed);
  if (waitingDots_ > 0) put(bytes, {escape, 'J', std::min(std::exchange(waitingDots_, 0), greatestFeed)});
}

void EscPosEncoder::cut(std::string& bytes) {
  feed(bytes);
  put(bytes, {group, 'V', 0x42, 0});
  isCut_ = true;
}

bool EscPosEncoder::picture(const PaintedPicture& painted, std::string& bytes) {
  const auto bitmap = readBitmap_ ? readBitmap_(painted.picture.file) : std::nullopt;
  if (!bitmap || bitmap->width <= 0 || bitmap->height <= 0) return false;
  feed(bytes);
  const bool asRaster = paper_.graphics == Graphics::raster;
  const Dots dots = dotsOf(*bitmap, asRaster ? rasterWidth : columnWidth);
  if (asRaster)
    raster(dots, bytes);
  else
    columns(dots, bytes);
  position_ += dots.height;
  isCut_ = false;
  return true;
}

/// Slices, because a row count beyond one byte is beyond many printers.
void EscPosEncoder::raster(const Dots& dots, std::string& bytes) {
  const int rowBytes = static_cast<int>(dots.rowBytes());
  for (int top = 0; top < dots.height; top += sliceRows) {
    const int rows = std::min(sliceRows, dots.height - top);
    put(bytes, {group, 'v', '0', 0, lowByte(rowBytes), highByte(rowBytes), rows, 0});
    const auto from = dots.rows.begin() + static_cast<std::ptrdiff_t>(top) * rowBytes;
    bytes.append(from, from + static_cast<std::ptrdiff_t>(rows) * rowBytes);
  }
}

/// Strips of eight rows, one byte a column, without a gap between the strips.
void EscPosEncoder::columns(const Dots& dots, std::string& bytes) {
  constexpr int stripFeed = 16;
  put(bytes, {escape, '3', stripFeed});
  for (int top = 0; top < dots.height; top += columnRows) {
    put(bytes, {escape, '*', 0, lowByte(dots.width), highByte(dots.width)});
    for (int x = 0; x < dots.width; ++x) {
      int column = 0;
      for (int row = 0; row < columnRows && top + row < dots.height; ++row)
        if (dots.at(x, top + row)) column |= 0x80 >> row;
      put(bytes, {column});
    }
    bytes += lineFeed;
  }
  put(bytes, {escape, '2'});
}

}  // namespace tellaxis::platform
