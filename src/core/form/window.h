// Window: what the rules ask of the main form's window.
#pragma once

#include <cstdint>
#include <string>

namespace tellaxis {

/// What the form's coordinates are measured in; the numbers are those of the forms.
enum class ScaleMode : std::int16_t { twips = 1, pixels = 3 };

/// The main form on the screen. A test's window only notes the calls.
class Window {
 public:
  virtual ~Window() = default;

  /// Shows the form, modeless, in front of the others; no change where it is visible.
  virtual void Show() = 0;
  virtual void Hide() = 0;
  /// Makes the form small, so that the task bar brings it back.
  virtual void Minimize() = 0;
  /// Takes the form from the screen for good: `Form_Unload` runs and the program ends.
  virtual void Unload() = 0;

  /// The form's caption, in code page 1252.
  virtual std::string Caption() const = 0;
  /// The system's handles of the form and of its icon; 0 where the system has none.
  virtual std::uintptr_t hWnd() const = 0;
  virtual std::uintptr_t Icon() const = 0;
};

}  // namespace tellaxis
