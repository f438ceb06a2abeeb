// Document JSON: texts, numbers and colours of one operation.
#include "platform/printing/document_json.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

void appendJsonText(std::string& json, std::string_view text) {
  static constexpr std::string_view digits = "0123456789abcdef";
  static constexpr std::string_view escaped = "\"\\\b\f\n\r\t";
  static constexpr std::string_view letters = "\"\\bfnrt";
  json += '"';
  for (const char byte : text) {
    if (const std::size_t index = escaped.find(byte); index != std::string_view::npos) {
      json += '\\';
      json += letters[index];
    } else if (const auto number = static_cast<std::uint8_t>(byte); number < 0x20) {
      json += "\\u00";
      json += digits[number >> 4U];
      json += digits[number & 15U];
    } else {
      appendUtf8(json, unicodeOf(byte));
    }
  }
  json += '"';
}

/// A number as JSON writes it: the C library writes its own mark before the fraction where a library of the window has
/// set the user's locale.
void appendWithPoint(std::string& json, std::string_view number) {
  const std::size_t mark = std::min(number.find_first_not_of("-0123456789e"), number.size());
  const std::size_t rest = std::min(number.find_first_of("0123456789e", mark), number.size());
  json += number.substr(0, mark);
  if (rest > mark) json += number[mark] == '+' ? '+' : '.';
  json += number.substr(rest);
}

/// The fewest digits that read back as the same number. (std::to_chars would bring 180 KB of tables into the program.)
void appendNumber(std::string& json, double number) {
  constexpr int mostDigits = 17;
  constexpr double exactIntegers = 1e15;
  if (number == std::trunc(number) && std::abs(number) < exactIntegers) {
    json += std::to_string(static_cast<std::int64_t>(number));
    return;
  }
  std::array<char, 32> text{};
  for (int digits = 1; digits <= mostDigits; ++digits) {
    std::snprintf(text.data(), text.size(), "%.*g", digits, number);
    if (std::strtod(text.data(), nullptr) == number) break;
  }
  appendWithPoint(json, text.data());
}

void appendCoordinate(std::string& json, std::optional<double> coordinate) {
  if (coordinate)
    appendNumber(json, *coordinate);
  else
    json += "null";
}

void appendColor(std::string& json, Color color) {
  static constexpr std::string_view digits = "0123456789abcdef";
  json += "\"#";
  for (const std::uint8_t part : {color.red, color.green, color.blue}) {
    json += digits[part >> 4U];
    json += digits[part & 15U];
  }
  json += '"';
}

struct JsonWriter {
  std::string& json;

  void operator()(const PrintStatement& print) const {
    json += R"({"op":"print","text":)";
    appendJsonText(json, print.text);
    json += R"(,"font":)";
    appendJsonText(json, print.font);
    json += R"(,"size":)";
    appendNumber(json, print.size);
    json += print.bold ? R"(,"bold":true,"color":)" : R"(,"bold":false,"color":)";
    appendColor(json, print.color);
    json += '}';
  }
  void operator()(const Move& move) const {
    json += R"({"op":"move","x":)";
    appendCoordinate(json, move.x);
    json += R"(,"y":)";
    appendCoordinate(json, move.y);
    json += '}';
  }
  void operator()(const PaintedPicture& painted) const {
    json += R"({"op":"picture","file":)";
    appendJsonText(json, painted.picture.file);
    json += R"(,"x":)";
    appendNumber(json, painted.x);
    json += R"(,"y":)";
    appendNumber(json, painted.y);
    json += R"(,"width":)" + std::to_string(painted.picture.width);
    json += R"(,"height":)" + std::to_string(painted.picture.height) + '}';
  }
};

}  // namespace

void appendJson(std::string& json, const Operation& operation) { std::visit(JsonWriter{json}, operation); }

std::string jsonOf(const Operation& operation) {
  std::string json;
  appendJson(json, operation);
  return json;
}

}  // namespace tellaxis::platform
