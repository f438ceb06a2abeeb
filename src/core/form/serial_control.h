// Serial control: a COM line of the main form, used through its properties.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/host.h"
#include "platform/serial_port.h"

namespace tellaxis {

/// A serial line as a control of the form: settings are kept while the line is closed and applied when it opens.
/// Every property assignment is a step of its own that may fail; a failed one changes nothing and is traced.
class SerialControl {
 public:
  explicit SerialControl(platform::Host& host);

  /// The COM number, 1 or more. Fails while the line is open.
  bool CommPort(std::int16_t number);
  std::int16_t CommPort() const { return number_; }

  /// The line settings, "9600,N,8,1" in form. On an open line they take effect at once.
  bool Settings(std::string_view text);
  const platform::LineSettings& Settings() const { return settings_; }

  /// Buffer sizes in bytes and event thresholds; buffer sizes take effect when the line is opened.
  bool InBufferSize(int bytes);
  bool OutBufferSize(int bytes);
  bool RThreshold(int count);
  bool SThreshold(int count);
  const platform::LineBuffers& buffers() const { return buffers_; }

  /// Opens or closes the line. Opening an open line and closing a closed one fail.
  bool PortOpen(bool open);
  bool PortOpen() const;

  /// Sends the text as 8-bit characters, in one write. Fails while the line is closed.
  bool Output(std::string_view text);

 private:
  bool failed(std::string_view operation, std::string_view reason) const;

  platform::Host& host_;
  std::unique_ptr<platform::SerialPort> port_;
  std::int16_t number_ = 1;
  platform::LineSettings settings_;
  platform::LineBuffers buffers_;
};

}  // namespace tellaxis
