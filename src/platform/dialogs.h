// Dialogs: message boxes, and letting the window handle what is waiting for it.
#pragma once

#include <cstdint>
#include <string_view>

namespace tellaxis::platform {

/// The numbers are the system's message box styles.
enum class Buttons : std::uint8_t { ok = 0, yesNo = 4 };

enum class Answer : std::uint8_t { ok = 1, yes = 6, no = 7 };

class Dialogs {
 public:
  virtual ~Dialogs() = default;

  /// Shows a message and returns when it was answered. Where nobody can answer, the answer is OK or Yes.
  virtual Answer show(std::string_view text, std::string_view title, Buttons buttons) = 0;

  /// Lets the user interface handle its pending events; nothing where there is no window.
  virtual void processEvents() = 0;
};

}  // namespace tellaxis::platform
