// Regional: tables of the regional settings that are known by heart, and reading a currency number by them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tellaxis {

/// The signs and words of a region, in code page 1252.
struct RegionalSettings {
  char decimalSeparator = ',';
  char groupSeparator = '.';
  std::string trueWord = "Vero";
  std::string falseWord = "Falso";
  std::array<std::string, 7> weekdays;  ///< full names, Sunday first
};

/// The settings of a region that the tables hold, by its name ("it_IT"); nothing for another name.
std::optional<RegionalSettings> regionalSettings(std::string_view name);

/// The settings of the language of `name` ("de" of "de_AT"), as its first region writes; nothing for another language.
std::optional<RegionalSettings> regionalSettingsOfLanguage(std::string_view name);

/// The settings where nobody chose any.
RegionalSettings italianSettings();

/// Ten-thousandths of the number that `text` writes: blanks around it, a sign, digits with group separators anywhere
/// before the decimal sign; at least one digit. Rounded half to even; nothing for any other text or beyond 64 bits.
std::optional<std::int64_t> currencyFromText(std::string_view text, const RegionalSettings& regional);

}  // namespace tellaxis
