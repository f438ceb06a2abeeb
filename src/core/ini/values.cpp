// Values: conversions between text, numbers and truth values.
#include "core/ini/values.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "text/letter_case.h"
#include "text/trimmed.h"

namespace tellaxis {

namespace {

constexpr std::int64_t tenThousand = 10'000;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string textOf(Currency number, char decimalSeparator) {
  const bool negative = number.tenThousandths < 0;
  const auto magnitude = negative ? 0U - static_cast<std::uint64_t>(number.tenThousandths)
                                  : static_cast<std::uint64_t>(number.tenThousandths);
  std::string text = (negative ? "-" : "") + std::to_string(magnitude / tenThousand);
  std::string decimals = std::to_string(tenThousand + static_cast<std::int64_t>(magnitude % tenThousand)).substr(1);
  decimals.erase(decimals.find_last_not_of('0') + 1);
  if (!decimals.empty()) text += decimalSeparator + decimals;
  return text;
}

/// The same number in the notation of the standard library; nothing when `text` has anything but a number in it.
std::optional<std::string> plainNotation(std::string_view text, const RegionalSettings& regional) {
  std::string plain;
  std::size_t position = 0;
  if (position < text.size() && (text[position] == '-' || text[position] == '+')) {
    if (text[position] == '-') plain += '-';
    ++position;
  }
  bool digits = false;
  bool decimals = false;
  for (; position < text.size(); ++position) {
    const char c = text[position];
    if (isDigit(c)) {
      plain += c;
      digits = true;
    } else if (c == regional.decimalSeparator && !decimals) {
      plain += '.';
      decimals = true;
    } else if (c != regional.groupSeparator || decimals || !digits) {
      break;
    }
  }
  if (!digits) return std::nullopt;
  if (position == text.size()) return plain;
  if (text[position] != 'e' && text[position] != 'E') return std::nullopt;
  std::string_view exponent = text.substr(position + 1);
  plain += 'e';
  if (!exponent.empty() && (exponent.front() == '-' || exponent.front() == '+')) {
    plain += exponent.front();
    exponent.remove_prefix(1);
  }
  if (exponent.empty() || exponent.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  return plain.append(exponent);
}

}  // namespace

std::string textOf(const Value& value, const RegionalSettings& regional) {
  struct TextForm {
    const RegionalSettings& regional;
    std::string operator()(Null) const { return {}; }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(std::int16_t number) const { return std::to_string(number); }
    std::string operator()(Currency number) const { return textOf(number, regional.decimalSeparator); }
    std::string operator()(bool truth) const { return truth ? regional.trueWord : regional.falseWord; }
  };
  return std::visit(TextForm{regional}, value);
}

std::optional<double> numberFromText(std::string_view text, const RegionalSettings& regional) {
  const auto plain = plainNotation(trimmed(text), regional);
  if (!plain) return std::nullopt;
  double number = 0;
  const auto result = std::from_chars(plain->data(), plain->data() + plain->size(), number);
  if (result.ec != std::errc{}) return std::nullopt;
  return number;
}

std::optional<double> numberFrom(const Value& value, const RegionalSettings& regional) {
  struct Number {
    const RegionalSettings& regional;
    std::optional<double> operator()(Null) const { return 0; }
    std::optional<double> operator()(const std::string& text) const { return numberFromText(text, regional); }
    std::optional<double> operator()(std::int16_t number) const { return number; }
    std::optional<double> operator()(Currency number) const {
      return static_cast<double>(number.tenThousandths) / static_cast<double>(tenThousand);
    }
    std::optional<double> operator()(bool truth) const { return truth ? yes : no; }
  };
  return std::visit(Number{regional}, value);
}

std::optional<std::int16_t> integerFrom(const Value& value, const RegionalSettings& regional) {
  const auto number = numberFrom(value, regional);
  if (!number) return std::nullopt;
  const double floor = std::floor(*number);
  const double fraction = *number - floor;
  const bool floorIsOdd = std::fmod(floor, 2) != 0;
  const double rounded = fraction > 0.5 || (fraction == 0.5 && floorIsOdd) ? floor + 1 : floor;
  if (!(rounded >= std::numeric_limits<std::int16_t>::min() && rounded <= std::numeric_limits<std::int16_t>::max()))
    return std::nullopt;
  return static_cast<std::int16_t>(rounded);
}

std::optional<bool> truthFrom(const Value& value, const RegionalSettings& regional) {
  if (const auto number = numberFrom(value, regional)) return *number != 0;
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) return std::nullopt;
  const std::string_view word = trimmed(*text);
  for (const std::string_view trueWord : {std::string_view("True"), std::string_view(regional.trueWord)})
    if (equalIgnoringCase(word, trueWord)) return true;
  for (const std::string_view falseWord : {std::string_view("False"), std::string_view(regional.falseWord)})
    if (equalIgnoringCase(word, falseWord)) return false;
  return std::nullopt;
}

bool isGreaterThanZero(const Value& value, const RegionalSettings& regional) {
  if (const auto number = numberFrom(value, regional)) return *number > 0;
  const auto* text = std::get_if<std::string>(&value);
  return text != nullptr && !trimmed(*text).empty();
}

}  // namespace tellaxis
