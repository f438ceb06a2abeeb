// Values: the variant that a setting travels as, and its conversions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/locale.h"

namespace tellaxis {

/// No value at all; counts as blank and is written as empty text.
using Null = std::monostate;

/// A fixed-point number with four decimals.
struct Currency {
  std::int64_t tenThousandths = 0;

  bool operator==(const Currency&) const = default;
};

/// A setting value. Integers -1 and 0 are the truth values of settings; `bool` is a truth value that is written as a
/// word.
using Value = std::variant<Null, std::string, std::int16_t, Currency, bool>;

inline constexpr std::int16_t yes = -1;
inline constexpr std::int16_t no = 0;

/// The text form of a value: integers in decimal, numbers with the region's decimal sign, truth values as the region's
/// words.
std::string textOf(const Value& value, const RegionalSettings& regional);

/// The number that a text writes: blanks around it, a sign, digits with the region's signs, an exponent; nothing for
/// any other text.
std::optional<double> numberFromText(std::string_view text, const RegionalSettings& regional);

/// The number that a value holds or writes; truth values are -1 and 0, no value is 0.
std::optional<double> numberFrom(const Value& value, const RegionalSettings& regional);

/// A 16-bit integer, rounded half to even; nothing outside -32768 to 32767 or for a text that is no number.
std::optional<std::int16_t> integerFrom(const Value& value, const RegionalSettings& regional);

/// A truth value: a number is true unless 0; the words True and False and the region's own count in any case; nothing
/// for other text.
std::optional<bool> truthFrom(const Value& value, const RegionalSettings& regional);

/// As the polling compares a setting with 0: a number as a number; any other text that is not blank is greater, blank
/// is not.
bool isGreaterThanZero(const Value& value, const RegionalSettings& regional);

}  // namespace tellaxis
