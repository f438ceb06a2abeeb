// Serial ports: COM lines that note what was sent on them.
#pragma once

#include <set>
#include <string>

#include "fake/journal.h"
#include "platform/serial_port.h"

namespace tellaxis::fake {

/// The lines of one computer; a line whose number is in `missing` cannot be opened.
class SerialPorts : public platform::SerialPorts {
 public:
  explicit SerialPorts(Journal& journal) : journal_(journal) {}

  std::set<int> missing;
  std::unique_ptr<platform::SerialPort> create() override;

 private:
  friend class SerialPort;
  Journal& journal_;
};

class SerialPort : public platform::SerialPort {
 public:
  explicit SerialPort(SerialPorts& ports) : ports_(ports) {}

  bool open(int number, const platform::LineSettings& settings, const platform::LineBuffers& buffers) override {
    const std::string line = name(number) + " " + text(settings) + " buffers " + std::to_string(buffers.input) + " " +
                             std::to_string(buffers.output);
    if (!ports_.journal_.record("serial open " + line) || number_ != 0 || ports_.missing.contains(number)) return false;
    number_ = number;
    return true;
  }
  bool isOpen() const override { return number_ != 0; }
  bool configure(const platform::LineSettings& settings) override {
    return ports_.journal_.record("serial configure " + name(number_) + " " + text(settings));
  }
  bool write(std::string_view bytes) override {
    return ports_.journal_.record("serial write " + name(number_) + " " + std::string(bytes)) && isOpen();
  }
  bool close() override {
    if (!ports_.journal_.record("serial close " + name(number_)) || !isOpen()) return false;
    number_ = 0;
    return true;
  }

 private:
  static std::string name(int number) { return "COM" + std::to_string(number); }
  static std::string text(const platform::LineSettings& settings) {
    constexpr std::string_view parities = "NOEMS";
    constexpr std::string_view stopBits[] = {"1", "1.5", "2"};
    return std::to_string(settings.baud) + "," + parities[static_cast<std::size_t>(settings.parity)] + "," +
           std::to_string(settings.dataBits) + "," + std::string(stopBits[static_cast<std::size_t>(settings.stopBits)]);
  }

  SerialPorts& ports_;
  int number_ = 0;
};

inline std::unique_ptr<platform::SerialPort> SerialPorts::create() { return std::make_unique<SerialPort>(*this); }

}  // namespace tellaxis::fake
