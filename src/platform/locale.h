// Locale: the user's regional settings, by which numbers and names of days are written.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tellaxis::platform {

/// The signs and words of a region, in code page 1252.
struct RegionalSettings {
  char decimalSeparator = ',';
  char groupSeparator = '.';
  std::string trueWord = "Vero";
  std::string falseWord = "Falso";
  std::array<std::string, 7> weekdays;  ///< full names, Sunday first
};

class Locale {
 public:
  virtual ~Locale() = default;

  virtual const RegionalSettings& regional() const = 0;

  /// Ten-thousandths of the currency-type number that `text` writes by the rules of the region, rounded half to even;
  /// nothing when the text is no number or too large for 64 bits.
  virtual std::optional<std::int64_t> currency(std::string_view text) const = 0;
};

}  // namespace tellaxis::platform
