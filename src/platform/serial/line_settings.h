// Line settings: a serial line's speed, framing and flow control.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tellaxis::platform {

enum class Parity : std::uint8_t { none, odd, even, mark, space };
enum class StopBits : std::uint8_t { one, onePointFive, two };

/// Whether the device may hold our bytes back.
enum class FlowControl : std::uint8_t {
  none,
  cts,  ///< it does by its line "clear to send"
};

/// The line's speed and framing.
struct LineSettings {
  int baud = 9600;  ///< bits a second
  Parity parity = Parity::none;
  int dataBits = 8;
  StopBits stopBits = StopBits::one;
  FlowControl flowControl = FlowControl::none;

  bool operator==(const LineSettings&) const = default;
};

/// The line that a text such as "9600,N,8,1" describes: bits a second, parity (N, O, E, M, S), 7 or 8 data bits, 1, 1.5
/// or 2 stop bits; nothing for a text of another form.
std::optional<LineSettings> lineSettingsFromText(std::string_view text);

}  // namespace tellaxis::platform
