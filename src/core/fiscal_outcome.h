// Fiscal outcome: what became of a fiscal job at the driver, as the hand-over itself knows it.
#pragma once

#include <cstdint>

namespace tellaxis {

enum class FiscalOutcome : std::uint8_t {
  notHandedOver,  ///< nothing reached a driver
  delivered,      ///< a driver that gives no answer has it
  confirmed,      ///< the driver answered
  unanswered,     ///< the driver was waited for in vain: the receipt may have come out
  givenUp,        ///< the driver did not take the receipt before it
};

}  // namespace tellaxis
