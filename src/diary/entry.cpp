// Entry: writing and reading a line.
#include "diary/entry.h"

#include <algorithm>
#include <charconv>

#include "text/json.h"

namespace tellaxis {

namespace {

struct TextMember {
  std::string_view name;
  std::string DiaryEntry::*member;
};
constexpr TextMember textMembers[] = {
    {"id", &DiaryEntry::id},         {"time", &DiaryEntry::time}, {"job", &DiaryEntry::job},
    {"reason", &DiaryEntry::reason}, {"copy", &DiaryEntry::copy},
};

struct NumberMember {
  std::string_view name;
  std::int64_t DiaryEntry::*member;
};
constexpr NumberMember numberMembers[] = {
    {"bytes", &DiaryEntry::bytes}, {"ms", &DiaryEntry::ms}, {"count", &DiaryEntry::count}};

bool readMember(DiaryEntry& entry, std::string_view name, std::string_view value) {
  if (const auto* text = std::ranges::find(textMembers, name, &TextMember::name); text != std::end(textMembers)) {
    entry.*text->member = value;
    return true;
  }
  if (const auto* number = std::ranges::find(numberMembers, name, &NumberMember::name);
      number != std::end(numberMembers))
    return std::from_chars(value.data(), value.data() + value.size(), entry.*number->member).ec == std::errc{};
  if (name == "device") {
    const auto device = deviceNamed(value);
    if (device) entry.device = *device;
    return device.has_value();
  }
  if (name == "outcome") {
    const auto outcome = outcomeNamed(value);
    if (outcome) entry.outcome = *outcome;
    return outcome.has_value();
  }
  return true;
}

}  // namespace

std::string lineOf(const DiaryEntry& entry) {
  JsonObject line;
  line.add("id", entry.id).add("time", entry.time).add("device", namesOf(entry.device).name).add("job", entry.job);
  line.add("bytes", entry.bytes).add("outcome", namesOf(entry.outcome).name).add("ms", entry.ms);
  line.add("reason", entry.reason).add("copy", entry.copy);
  if (entry.count != 1) line.add("count", entry.count);
  return line.text();
}

std::optional<DiaryEntry> entryFrom(std::string_view line) {
  DiaryEntry entry;
  bool usable = true;
  const bool whole = readJsonObject(line, [&](std::string_view name, std::string_view value) {
    if (!readMember(entry, name, value)) usable = false;
  });
  if (!whole || !usable || entry.id.empty() || entry.time.empty()) return std::nullopt;
  return entry;
}

}  // namespace tellaxis
