// Outcome: what became of a job.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "core/activity.h"
#include "core/bridge.h"

namespace tellaxis {

/// What became of a job.
enum class Outcome : std::uint8_t {
  delivered,    ///< handed to a driver that gives no answer
  confirmed,    ///< the driver answered
  unanswered,   ///< the driver was waited for in vain
  givenUp,      ///< the driver did not take the receipt before it
  done,         ///< shown or printed without a failing step
  failed,       ///< a step failed
  discarded,    ///< it waited and was emptied at the start
  unconfirmed,  ///< it was under way when the program ended: nobody knows whether it came out
};
inline constexpr std::size_t outcomeCount = 8;

/// Names of an outcome: in files, and for the reader.
struct OutcomeNames {
  Outcome outcome;
  std::string_view name;
  std::string_view italian;
  bool problem;  ///< somebody has to look after it
};
const OutcomeNames& namesOf(Outcome outcome);

/// The outcome of this name in files.
std::optional<Outcome> outcomeNamed(std::string_view name);

/// Whether a job of `device` that failed may come again: its file, of which there is one, then stays.
bool comesAgain(Device device);

/// The outcome of the job of `device` that has just ended, and that `activity` heard of.
Outcome outcomeOf(Device device, const Bridge& bridge, const Activity& activity);

}  // namespace tellaxis
