// FTP limits: what a server may take of time and a download of the disk, and the watch over a transfer that keeps them.
#pragma once

#include <chrono>
#include <cstdint>

namespace tellaxis::platform {

struct FtpLimits {
  std::chrono::seconds connection{15};  ///< until logged in
  std::chrono::seconds stall{60};       ///< without a byte or an answer
  std::int64_t lowestRate = 32;         ///< bytes a second, on the average of a time of `stall`
  double largestShare = 0.9;            ///< of what is free on the disk, for one download
};

/// Tells when a transfer is to be given up: no byte has moved for too long, or too few have.
class TransferWatch {
 public:
  using Clock = std::chrono::steady_clock;

  explicit TransferWatch(const FtpLimits& limits = {}, Clock::time_point now = Clock::now());

  /// To be called again and again with the bytes that have moved so far.
  bool givesUp(std::int64_t moved, Clock::time_point now = Clock::now());

 private:
  FtpLimits limits_;
  std::int64_t moved_ = 0;
  Clock::time_point lastMove_;
  std::int64_t movedBefore_ = 0;  ///< at the beginning of the time that the rate is measured over
  Clock::time_point measuredSince_;
};

}  // namespace tellaxis::platform
