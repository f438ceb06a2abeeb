// Locale: Italian regional settings, or any others that a test sets.
#pragma once

#include "platform/locale.h"
#include "platform/virtual/regional.h"

namespace tellaxis::fake {

class Locale : public platform::Locale {
 public:
  platform::RegionalSettings settings = platform::italianSettings();

  const platform::RegionalSettings& regional() const override { return settings; }
  std::optional<std::int64_t> currency(std::string_view text) const override {
    return platform::currencyFromText(text, settings);
  }
};

}  // namespace tellaxis::fake
