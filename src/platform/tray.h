// Tray: the icon in the notification area of the task bar.
#pragma once

#include <cstdint>
#include <string>

namespace tellaxis::platform {

/// What to do with an icon; the numbers are the system's.
enum class TrayAction : std::uint8_t { add = 0, remove = 2 };

/// The system's published record for a notification icon, field by field.
struct TrayRecord {
  std::uint32_t size = 88;  ///< bytes of the narrow-character record
  std::uintptr_t window = 0;
  std::uint32_t identifier = 0;
  std::uint32_t flags = 0;
  std::uint32_t callbackMessage = 0;
  std::uintptr_t icon = 0;
  std::string tip;  ///< at most 63 characters, without the ending NUL
};

class Tray {
 public:
  virtual ~Tray() = default;

  /// True when the desktop has a place for the icon, so that a hidden window can be brought back with it.
  virtual bool available() = 0;

  /// Hands a record to the desktop. Adding an icon that is there already, or removing one that is not, is a failure.
  virtual bool notify(TrayAction action, const TrayRecord& record) = 0;

  /// To be called now and then: adds an icon again that the desktop was too busy to take or has lost since.
  virtual void keep() {}
};

}  // namespace tellaxis::platform
