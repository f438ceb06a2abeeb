// Entry: the tables of names, writing and reading a line.
#include "diary/entry.h"

#include <algorithm>
#include <charconv>

#include "text/json.h"

namespace tellaxis {

namespace {

constexpr OutcomeNames outcomes[] = {
    {.outcome = Outcome::delivered, .name = "delivered", .italian = "consegnato", .problem = false},
    {.outcome = Outcome::confirmed, .name = "confirmed", .italian = "confermato", .problem = false},
    {.outcome = Outcome::unanswered, .name = "unanswered", .italian = "senza risposta", .problem = true},
    {.outcome = Outcome::givenUp, .name = "given-up", .italian = "rinunciato", .problem = true},
    {.outcome = Outcome::done, .name = "done", .italian = "fatto", .problem = false},
    {.outcome = Outcome::failed, .name = "failed", .italian = "non riuscito", .problem = true},
    {.outcome = Outcome::discarded, .name = "discarded", .italian = "scartato", .problem = true},
    {.outcome = Outcome::unconfirmed, .name = "unconfirmed", .italian = "non confermato", .problem = true},
};

constexpr DeviceNames devices[] = {
    {.device = Device::fiscalPrinter, .name = "fiscal", .italian = "fiscale"},
    {.device = Device::display, .name = "display", .italian = "display"},
    {.device = Device::slipPrinter, .name = "slip", .italian = "ricevuta"},
    {.device = Device::courtesyPrinter, .name = "courtesy", .italian = "preconto"},
};

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
    const auto* row = std::ranges::find(outcomes, value, &OutcomeNames::name);
    if (row != std::end(outcomes)) entry.outcome = row->outcome;
    return row != std::end(outcomes);
  }
  return true;
}

}  // namespace

const OutcomeNames& namesOf(Outcome outcome) { return *std::ranges::find(outcomes, outcome, &OutcomeNames::outcome); }

const DeviceNames& namesOf(Device device) { return *std::ranges::find(devices, device, &DeviceNames::device); }

std::optional<Device> deviceNamed(std::string_view name) {
  for (const DeviceNames& row : devices)
    if (row.name == name || row.italian == name) return row.device;
  return std::nullopt;
}

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
