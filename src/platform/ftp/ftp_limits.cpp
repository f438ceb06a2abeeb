// FTP limits: the rate of a transfer, from its first byte on.
#include "platform/ftp/ftp_limits.h"

namespace tellaxis::platform {

TransferWatch::TransferWatch(const FtpLimits& limits, Clock::time_point now)
    : limits_(limits), lastMove_(now), measuredSince_(now) {}

bool TransferWatch::givesUp(std::int64_t moved, Clock::time_point now) {
  if (moved != moved_) lastMove_ = now;
  moved_ = moved;
  if (now - lastMove_ >= limits_.stall) return true;
  if (moved == 0) measuredSince_ = now;
  if (now - measuredSince_ < limits_.stall) return false;
  const bool tooSlow = moved - movedBefore_ < limits_.lowestRate * limits_.stall.count();
  measuredSince_ = now;
  movedBefore_ = moved;
  return tooSlow;
}

}  // namespace tellaxis::platform
