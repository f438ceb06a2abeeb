// Locale: the user's regional settings, by which numbers and names of days are written.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "text/regional.h"

namespace tellaxis::platform {

class Locale {
 public:
  virtual ~Locale() = default;

  virtual const RegionalSettings& regional() const = 0;

  /// Ten-thousandths of the currency-type number that `text` writes by the rules of the region, rounded half to even;
  /// nothing when the text is no number or too large for 64 bits.
  virtual std::optional<std::int64_t> currency(std::string_view text) const = 0;
};

}  // namespace tellaxis::platform
