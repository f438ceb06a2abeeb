// Locale of Windows: the user's regional settings, or those of a region by its name.
#pragma once

#include <windows.h>

#include <string_view>

#include "platform/locale.h"

namespace tellaxis::platform {

/// The number of the region called `name` ("it_IT"); nothing when the system does not know it.
std::optional<LCID> regionCalled(std::string_view name);

class WindowsLocale : public Locale {
 public:
  /// The user's own settings, with what the user changed in them.
  WindowsLocale() : WindowsLocale(LOCALE_USER_DEFAULT, 0) {}

  /// A region's settings as the system has them.
  explicit WindowsLocale(LCID region) : WindowsLocale(region, LOCALE_NOUSEROVERRIDE) {}

  const RegionalSettings& regional() const override { return regional_; }
  std::optional<std::int64_t> currency(std::string_view text) const override;

 private:
  WindowsLocale(LCID region, DWORD flags);

  std::string text(LCTYPE type) const;

  LCID region_;
  DWORD flags_;
  RegionalSettings regional_;
};

}  // namespace tellaxis::platform
