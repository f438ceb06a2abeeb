// Device fonts: the table of font names and the table of control letters.
#include "platform/printing/device_fonts.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

constexpr DeviceFont deviceFonts[] = {
    {.name = "FontControl", .kind = FontKind::control},
    {.name = "JAN13(EAN)", .kind = FontKind::barCode},
    {.name = "FontA15cpi", .face = Face::a, .pitch = 15, .normalSize = 9},
    {.name = "FontB17cpi", .face = Face::b, .pitch = 17, .normalSize = 9},
    {.name = "FontA1x1", .face = Face::a},
    {.name = "FontB1x1", .face = Face::b},
    {.name = "FontB1x2", .face = Face::b, .height = 2},
    {.name = "FontA11", .face = Face::a},
    {.name = "FontB11", .face = Face::b},
    {.name = "FontB12", .face = Face::b, .height = 2},
    {.name = "Courier New", .kind = FontKind::outline, .normalSize = 10},
};

struct ControlLetter {
  char letter;
  ControlAction action;
};

constexpr ControlLetter controlLetters[] = {
    {' ', ControlAction::lineFeed}, {'P', ControlAction::cut},   {'w', ControlAction::left},
    {'x', ControlAction::centre},   {'y', ControlAction::right}, {'r', ControlAction::digitsBelow},
};

/// Points at which a font of the computer is as high as the printer's normal letters.
constexpr double normalOutlineSize = 10;
constexpr int greatestScale = 8;

bool isScale(char digit) { return digit >= '1' && digit <= '0' + greatestScale; }

/// "FontA21" and "FontA2x1": face, width, height.
std::optional<DeviceFont> fontFromItsName(std::string_view name) {
  constexpr std::string_view prefix = "font";
  if (name.size() < prefix.size() + 3 || !equalIgnoringAsciiCase(name.substr(0, prefix.size()), prefix))
    return std::nullopt;
  const char face = upperCase(name[prefix.size()]);
  const std::string_view scale = name.substr(prefix.size() + 1);
  const bool isShort = scale.size() == 2;
  const bool isLong = scale.size() == 3 && upperCase(scale[1]) == 'X';
  if ((face != 'A' && face != 'B') || (!isShort && !isLong)) return std::nullopt;
  if (!isScale(scale.front()) || !isScale(scale.back())) return std::nullopt;
  return DeviceFont{.name = name,
                    .face = face == 'A' ? Face::a : Face::b,
                    .width = scale.front() - '0',
                    .height = scale.back() - '0'};
}

DeviceFont deviceFont(std::string_view name) {
  const auto* found = std::find_if(std::begin(deviceFonts), std::end(deviceFonts),
                                   [&](const DeviceFont& font) { return equalIgnoringAsciiCase(font.name, name); });
  if (found != std::end(deviceFonts)) return *found;
  return fontFromItsName(name).value_or(
      DeviceFont{.name = name, .kind = FontKind::outline, .normalSize = normalOutlineSize});
}

}  // namespace

PrintedFont printedFont(std::string_view name, double size) {
  const DeviceFont font = deviceFont(name);
  const double times = font.normalSize > 0 ? std::clamp(std::floor(size / font.normalSize + 0.25), 1.0, 8.0) : 1;
  const int enlarged = static_cast<int>(times);
  return {.kind = font.kind,
          .face = font.face,
          .pitch = font.pitch,
          .width = std::min(font.width * (font.kind == FontKind::outline ? enlarged : 1), greatestScale),
          .height = std::min(font.height * enlarged, greatestScale)};
}

ControlAction controlAction(char letter) {
  const auto* found = std::find_if(std::begin(controlLetters), std::end(controlLetters),
                                   [&](const ControlLetter& control) { return control.letter == letter; });
  return found == std::end(controlLetters) ? ControlAction::nothing : found->action;
}

}  // namespace tellaxis::platform
