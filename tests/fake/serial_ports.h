// Serial ports: COM lines that note what was sent on them.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "fake/journal.h"
#include "platform/serial_port.h"
#include "platform/trace.h"

namespace tellaxis::fake {

/// The lines of one computer; a line whose number is in `missing` cannot be opened, one in `away` takes nothing.
class SerialPorts : public platform::SerialPorts {
 public:
  SerialPorts(Journal& journal, platform::Trace& trace) : journal_(journal), trace_(trace) {}

  std::set<int> missing;
  std::set<int> away;
  std::vector<platform::SerialPortInfo> known;

  std::unique_ptr<platform::SerialPort> create() override;
  std::vector<platform::SerialPortInfo> list() override { return known; }

 private:
  friend class SerialPort;

  bool done(bool succeeded, std::string_view call) {
    if (!succeeded) trace_.failed("serial", call, "finto");
    return succeeded;
  }

  Journal& journal_;
  platform::Trace& trace_;
};

class SerialPort : public platform::SerialPort {
 public:
  explicit SerialPort(SerialPorts& ports) : ports_(ports) {}

  bool open(int number, const platform::LineSettings& settings, const platform::LineBuffers& buffers) override {
    const bool succeeds = note("open " + name(number) + " " + text(settings) + " buffers " +
                               std::to_string(buffers.input) + " " + std::to_string(buffers.output));
    const bool possible = number_ == 0 && !ports_.missing.contains(number) && !ports_.away.contains(number);
    if (!ports_.done(succeeds && possible, "open")) return false;
    number_ = number;
    return true;
  }
  bool isOpen() const override { return number_ != 0; }
  bool configure(const platform::LineSettings& settings) override {
    return ports_.done(note("configure " + name(number_) + " " + text(settings)) && isOpen(), "configure");
  }
  bool write(std::string_view bytes) override {
    const bool succeeds = note("write " + name(number_) + " " + std::string(bytes));
    return ports_.done(succeeds && isOpen() && !ports_.away.contains(number_), "write");
  }
  bool close() override {
    if (!ports_.done(note("close " + name(number_)) && isOpen(), "close")) return false;
    number_ = 0;
    return true;
  }

 private:
  bool note(const std::string& call) { return ports_.journal_.record("serial " + call); }
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
