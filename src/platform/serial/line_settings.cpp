// Line settings: reading them from their text.
#include "platform/serial/line_settings.h"

#include <array>
#include <charconv>
#include <string>
#include <utility>

#include "text/trimmed.h"

namespace tellaxis::platform {

namespace {

constexpr std::pair<std::string_view, Parity> parities[] = {
    {"N", Parity::none}, {"O", Parity::odd}, {"E", Parity::even}, {"M", Parity::mark}, {"S", Parity::space},
    {"n", Parity::none}, {"o", Parity::odd}, {"e", Parity::even}, {"m", Parity::mark}, {"s", Parity::space},
};

constexpr std::pair<std::string_view, int> dataBits[] = {{"7", 7}, {"8", 8}};

constexpr std::pair<std::string_view, StopBits> stopBits[] = {
    {"1", StopBits::one}, {"1.5", StopBits::onePointFive}, {"2", StopBits::two}};

template <typename Table>
auto find(const Table& table, std::string_view word) -> std::optional<decltype(std::begin(table)->second)> {
  for (const auto& [text, value] : table)
    if (text == word) return value;
  return std::nullopt;
}

std::optional<std::array<std::string_view, 4>> fourFields(std::string_view text) {
  std::array<std::string_view, 4> fields;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const bool last = i + 1 == fields.size();
    const std::size_t comma = text.find(',');
    if (last != (comma == std::string_view::npos)) return std::nullopt;
    fields[i] = trimmed(text.substr(0, comma));
    if (!last) text.remove_prefix(comma + 1);
  }
  return fields;
}

std::optional<int> positiveNumber(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size() || number <= 0) return std::nullopt;
  return number;
}

}  // namespace

std::optional<LineSettings> lineSettingsFromText(std::string_view text) {
  const auto fields = fourFields(text);
  if (!fields) return std::nullopt;
  const auto baud = positiveNumber((*fields)[0]);
  const auto parity = find(parities, (*fields)[1]);
  const auto bits = find(dataBits, (*fields)[2]);
  const auto stop = find(stopBits, (*fields)[3]);
  if (!baud || !parity || !bits || !stop) return std::nullopt;
  return LineSettings{.baud = *baud, .parity = *parity, .dataBits = *bits, .stopBits = *stop};
}

}  // namespace tellaxis::platform
