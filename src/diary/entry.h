// Entry: one job in the diary, and its line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/activity.h"
#include "core/device_names.h"
#include "core/outcome.h"

namespace tellaxis {

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
