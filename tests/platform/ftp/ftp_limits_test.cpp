// Tests of the watch over a transfer.
#include "platform/ftp/ftp_limits.h"

#include <gtest/gtest.h>

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;

struct Transfer {
  TransferWatch::Clock::time_point now{};
  TransferWatch watch{{.stall = 60s, .lowestRate = 32}, now};
  std::int64_t moved = 0;

  /// How many seconds it lasts at that many bytes a second, at most an hour.
  int secondsAt(std::int64_t rate) {
    for (int second = 0; second < 3600; ++second, now += 1s, moved += rate)
      if (watch.givesUp(moved, now)) return second;
    return 3600;
  }
};

TEST(TransferWatch, ATransferWithoutAByteEndsAfterTheStall) { EXPECT_EQ(Transfer().secondsAt(0), 60); }

TEST(TransferWatch, AByteASecondIsTooSlow) {
  const int seconds = Transfer().secondsAt(1);
  EXPECT_GE(seconds, 60);
  EXPECT_LE(seconds, 120);
}

TEST(TransferWatch, ASlowLineGoesOn) { EXPECT_EQ(Transfer().secondsAt(120), 3600); }

TEST(TransferWatch, ALineThatStallsForAMomentGoesOn) {
  Transfer transfer;
  for (int round = 0; round < 20; ++round) {
    for (int second = 0; second < 40; ++second, transfer.now += 1s)
      ASSERT_FALSE(transfer.watch.givesUp(transfer.moved, transfer.now)) << round;
    transfer.moved += 100'000;
  }
}

TEST(TransferWatch, AFastTransferThatBecomesSlowIsGivenUp) {
  Transfer transfer;
  for (int second = 0; second < 30; ++second, transfer.now += 1s, transfer.moved += 1'000'000)
    ASSERT_FALSE(transfer.watch.givesUp(transfer.moved, transfer.now));
  EXPECT_LE(transfer.secondsAt(1), 121);
}

}  // namespace
}  // namespace tellaxis::platform
