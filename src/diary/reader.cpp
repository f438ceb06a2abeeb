// Reader: lines to entries, the later line of an id in the place of the earlier.
#include "diary/reader.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "core/input/text_lines.h"

namespace tellaxis {

bool isWanted(const DiaryQuery& query, const DiaryEntry& entry) {
  if (query.device && *query.device != entry.device) return false;
  return !query.problemsOnly || namesOf(entry.outcome).problem;
}

std::vector<DiaryEntry> readDay(platform::Host& host, std::string_view folder, Day day) {
  std::vector<DiaryEntry> entries;
  const std::string file = dayFile(folder, day);
  if (!host.files.exists(file)) return entries;
  std::unordered_map<std::string, std::size_t> places;
  TextLines lines(host, file);
  while (const auto line = lines.next()) {
    auto entry = entryFrom(*line);
    if (!entry) continue;
    const auto [place, isNew] = places.try_emplace(entry->id, entries.size());
    if (isNew)
      entries.push_back(std::move(*entry));
    else
      entries[place->second] = std::move(*entry);
  }
  return entries;
}

std::vector<DiaryEntry> readDiary(platform::Host& host, std::string_view folder, const DiaryQuery& query) {
  std::vector<DiaryEntry> found;
  for (const Day day : daysIn(host.files, folder)) {
    if ((query.from && day < *query.from) || (query.to && day > *query.to)) continue;
    for (DiaryEntry& entry : readDay(host, folder, day))
      if (isWanted(query, entry)) found.push_back(std::move(entry));
  }
  return found;
}

std::optional<DiaryEntry> findEntry(platform::Host& host, std::string_view folder, std::string_view id) {
  const auto day = dayOfId(id);
  if (!day) return std::nullopt;
  std::vector<DiaryEntry> entries = readDay(host, folder, *day);
  const auto found = std::ranges::find(entries, id, &DiaryEntry::id);
  if (found == entries.end()) return std::nullopt;
  return std::move(*found);
}

}  // namespace tellaxis
