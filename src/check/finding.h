// Finding: one thing that the check has to say about a device.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tellaxis {

/// What is checked, in the order of the report.
enum class Checked : std::uint8_t { general, fiscal, display, slip, courtesy, ftp, dialup, schedule };
inline constexpr std::size_t checkedCount = 8;

/// From harmless to harmful.
enum class Level : std::uint8_t { ok, off, warning, error };

struct Finding {
  Checked device = Checked::general;
  Level level = Level::ok;
  std::string_view code;
  std::string text;         ///< what is the case, with the file, port or printer that it is about
  std::string_view remedy;  ///< what to do; empty where nothing is wrong
};

}  // namespace tellaxis
