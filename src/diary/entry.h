// Entry: one job in the diary, and its line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/activity.h"

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

/// Names of an outcome: in the diary, and for the reader.
struct OutcomeNames {
  Outcome outcome;
  std::string_view name;
  std::string_view italian;
  bool problem;  ///< somebody has to look after it
};
const OutcomeNames& namesOf(Outcome outcome);

/// Names of a device: in the diary, and for the reader.
struct DeviceNames {
  Device device;
  std::string_view name;
  std::string_view italian;
};
const DeviceNames& namesOf(Device device);

/// The device of this name, in either language.
std::optional<Device> deviceNamed(std::string_view name);

struct DiaryEntry {
  std::string id;    ///< "261121-17": the day it began, and its number of the day
  std::string time;  ///< local, when it began: "2026-11-21T10:05:42.123"
  Device device = Device::fiscalPrinter;
  std::string job;  ///< the job file's bare name
  std::int64_t bytes = 0;
  Outcome outcome = Outcome::done;
  std::int64_t ms = 0;     ///< how long it took, the last time where it was tried again
  std::string reason;      ///< the first step that failed, with its reason; empty when all went well
  std::string copy;        ///< its copy in the archive, relative to the diary's folder; empty without one
  std::int64_t count = 1;  ///< how often it was tried

  bool operator==(const DiaryEntry&) const = default;
};

/// The entry's line of JSON, without the line's end.
std::string lineOf(const DiaryEntry& entry);

/// The entry that a line holds; nothing for a torn one.
std::optional<DiaryEntry> entryFrom(std::string_view line);

}  // namespace tellaxis
