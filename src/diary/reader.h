// Reader: the entries of the diary, for whoever asks what happened.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "diary/day.h"
#include "diary/entry.h"
#include "platform/host.h"

namespace tellaxis {

/// Which entries are wanted.
struct DiaryQuery {
  std::optional<Day> from;       ///< absent: from the oldest day on
  std::optional<Day> to;         ///< absent: up to the newest
  std::optional<Device> device;  ///< absent: all
  bool problemsOnly = false;
};

/// By device and outcome; the day is not looked at.
bool isWanted(const DiaryQuery& query, const DiaryEntry& entry);

/// The entries of one day in the order in which they began to be written, one for each job: of a job that was tried
/// again, its last state. Lines that are torn or that nobody knows are passed over.
std::vector<DiaryEntry> readDay(platform::Host& host, std::string_view folder, Day day);

/// The entries that `query` asks for, from the oldest day on.
std::vector<DiaryEntry> readDiary(platform::Host& host, std::string_view folder, const DiaryQuery& query);

/// The entry of this id; nothing where the diary has none.
std::optional<DiaryEntry> findEntry(platform::Host& host, std::string_view folder, std::string_view id);

}  // namespace tellaxis
