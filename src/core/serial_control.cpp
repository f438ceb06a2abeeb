// Serial control: properties of a COM line and the reading of its settings text.
#include "core/serial_control.h"

#include <array>
#include <charconv>
#include <string>
#include <utility>

#include "core/values.h"
#include "platform/trace.h"

namespace tellaxis {

namespace {

using platform::Parity;
using platform::StopBits;

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

std::optional<platform::LineSettings> lineSettingsFromText(std::string_view text) {
  const auto fields = fourFields(text);
  if (!fields) return std::nullopt;
  const auto baud = positiveNumber((*fields)[0]);
  const auto parity = find(parities, (*fields)[1]);
  const auto bits = find(dataBits, (*fields)[2]);
  const auto stop = find(stopBits, (*fields)[3]);
  if (!baud || !parity || !bits || !stop) return std::nullopt;
  return platform::LineSettings{.baud = *baud, .parity = *parity, .dataBits = *bits, .stopBits = *stop};
}

SerialControl::SerialControl(platform::Host& host) : host_(host), port_(host.serialPorts.create()) {}

bool SerialControl::failed(std::string_view operation, std::string_view reason) const {
  host_.trace.failed(operation, "COM" + std::to_string(number_), reason);
  return false;
}

bool SerialControl::CommPort(std::int16_t number) {
  if (number < 1) return failed("CommPort", "numero di porta non valido: " + std::to_string(number));
  if (PortOpen()) return failed("CommPort", "la porta \xE8 aperta");
  number_ = number;
  return true;
}

bool SerialControl::Settings(std::string_view text) {
  const auto settings = lineSettingsFromText(text);
  if (!settings) return failed("Settings", "parametri non validi: " + std::string(text));
  if (PortOpen() && !port_->configure(*settings)) return false;
  settings_ = *settings;
  return true;
}

bool SerialControl::InBufferSize(int bytes) {
  if (bytes <= 0) return failed("InBufferSize", "dimensione non valida");
  buffers_.input = bytes;
  return true;
}

bool SerialControl::OutBufferSize(int bytes) {
  if (bytes <= 0) return failed("OutBufferSize", "dimensione non valida");
  buffers_.output = bytes;
  return true;
}

bool SerialControl::RThreshold(int count) {
  buffers_.receiveThreshold = count;
  return true;
}

bool SerialControl::SThreshold(int count) {
  buffers_.sendThreshold = count;
  return true;
}

bool SerialControl::PortOpen(bool open) { return open ? port_->open(number_, settings_, buffers_) : port_->close(); }

bool SerialControl::PortOpen() const { return port_->isOpen(); }

bool SerialControl::Output(std::string_view text) { return port_->write(text); }

}  // namespace tellaxis
