// Serial control: properties of a COM line and the reading of its settings text.
#include "core/form/serial_control.h"

#include <string>
#include <utility>

#include "core/ini/values.h"
#include "platform/trace.h"

namespace tellaxis {

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
  const auto settings = platform::lineSettingsFromText(text);
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
