// Day: the moments of the diary, and what the files of a day are called.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "platform/files.h"

namespace tellaxis {

using Day = std::chrono::sys_days;

/// A local day and the time since its midnight.
struct Moment {
  Day day;
  std::chrono::milliseconds time{0};
};

Moment momentOf(platform::Clock& clock);

/// From one moment to a later one, across midnight too; 0 where the clock was set back.
std::chrono::milliseconds between(const Moment& from, const Moment& to);

std::string textOf(Day day);                 ///< "2026-11-21"
std::string textOf(const Moment& moment);    ///< "2026-11-21T10:05:42.123"
std::string fileTime(const Moment& moment);  ///< "100542-123"
std::string idPrefix(Day day);               ///< "261121-"

/// The day that "2026-11-21" or "21/11/2026" writes.
std::optional<Day> dayFrom(std::string_view text);

/// The day of an id, "261121-17".
std::optional<Day> dayOfId(std::string_view id);

/// Path of the day's lines in the diary's `folder`.
std::string dayFile(std::string_view folder, Day day);

/// The days that have lines, from the oldest on.
std::vector<Day> daysIn(platform::Files& files, std::string_view folder);

}  // namespace tellaxis
