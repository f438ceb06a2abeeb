// Locale: the regional settings of the environment, or those asked for.
#pragma once

#include <utility>

#include "platform/locale.h"

namespace tellaxis::platform {

class LinuxLocale : public Locale {
 public:
  explicit LinuxLocale(RegionalSettings regional) : regional_(std::move(regional)) {}

  const RegionalSettings& regional() const override { return regional_; }
  std::optional<std::int64_t> currency(std::string_view text) const override;

 private:
  RegionalSettings regional_;
};

/// The settings of a locale name ("it_IT", "de_AT.UTF-8"): by heart, from the C library's locale data, or those of the
/// language; nothing for a name that none of them knows. "C" and "POSIX" are nobody's choice and give Italian ones.
std::optional<RegionalSettings> settingsOfLocale(const std::string& name);

/// The settings that LC_ALL, LC_NUMERIC or LANG name, the first of them that is set; Italian ones where they help no
/// further.
RegionalSettings settingsOfEnvironment();

}  // namespace tellaxis::platform
