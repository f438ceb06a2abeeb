// CUPS server: the one that this computer prints through, left alone for a while after it kept silent.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/printing/cups/cups_library.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// The library is loaded with the first request. A server that did not answer in time is not asked again for a minute:
/// requests then fail at once.
class CupsServer {
 public:
  explicit CupsServer(Trace& trace, std::chrono::milliseconds rest = std::chrono::minutes(1))
      : trace_(trace), rest_(rest) {}

  /// Its queues in its own order; none on a computer without a server, nothing on a failure, which is reported.
  std::optional<std::vector<CupsQueue>> list();

  /// Sends one job of `queue` (UTF-8). False on a failure, which is reported.
  bool send(const std::string& queue, JobFormat format, const ByteReader& read);

  /// What the printer behind `queue` (UTF-8) says; `unknown` where the server does not tell, which is reported.
  PrinterState state(const std::string& queue);

 private:
  const CupsLibrary* library();
  bool isResting(std::string_view operation, std::string_view subject);
  void failed(std::string_view operation, std::string_view subject, const CupsFailure& failure);

  Trace& trace_;
  std::chrono::milliseconds rest_;
  std::chrono::steady_clock::time_point restsUntil_;
  bool wasThere_ = false;
};

}  // namespace tellaxis::platform
