// Locale: Italian regional settings, or any others that a test sets.
#pragma once

#include "platform/locale.h"
#include "text/regional.h"

namespace tellaxis::fake {

class Locale : public platform::Locale {
 public:
  RegionalSettings settings = italianSettings();

  const RegionalSettings& regional() const override { return settings; }
  std::optional<std::int64_t> currency(std::string_view text) const override {
    return currencyFromText(text, settings);
  }
};

}  // namespace tellaxis::fake
