// Day: calendar days as text and back.
#include "diary/day.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tellaxis {

namespace {

using namespace std::chrono;

constexpr std::string_view extension = ".jsonl";
constexpr int century = 2000;

void appendDigits(std::string& text, long long number, std::size_t width) {
  const std::string digits = std::to_string(number);
  text.append(width - std::min(width, digits.size()), '0').append(digits);
}

std::optional<int> digitsOf(std::string_view text, std::size_t first, std::size_t count) {
  if (text.size() < first + count) return std::nullopt;
  const std::string_view digits = text.substr(first, count);
  if (digits.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  int number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

std::optional<Day> dayOf(std::optional<int> year, std::optional<int> month, std::optional<int> day) {
  if (!year || !month || !day) return std::nullopt;
  const year_month_day date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                            std::chrono::day(static_cast<unsigned>(*day))};
  if (!date.ok()) return std::nullopt;
  return Day(date);
}

Day today(platform::Clock& clock) {
  const platform::DateTime now = clock.now();
  return Day(
      year_month_day{year(now.year), month(static_cast<unsigned>(now.month)), day(static_cast<unsigned>(now.day))});
}

milliseconds timeOfDay(platform::Clock& clock) {
  return milliseconds(static_cast<std::int64_t>(std::floor(clock.secondsSinceMidnight() * 1000)));
}

void appendTime(std::string& text, milliseconds time, std::string_view between, std::string_view point) {
  const hh_mm_ss parts(time);
  appendDigits(text, parts.hours().count(), 2);
  appendDigits(text.append(between), parts.minutes().count(), 2);
  appendDigits(text.append(between), parts.seconds().count(), 2);
  appendDigits(text.append(point), parts.subseconds().count(), 3);
}

}  // namespace

Moment momentOf(platform::Clock& clock) {
  // Between the two looks midnight may pass.
  for (Day before = today(clock);;) {
    const milliseconds time = timeOfDay(clock);
    const Day after = today(clock);
    if (after == before) return {after, time};
    before = after;
  }
}

milliseconds between(const Moment& from, const Moment& to) {
  return std::max(0ms, (to.day - from.day) + (to.time - from.time));
}

std::string textOf(Day day) {
  const year_month_day date(day);
  std::string text;
  appendDigits(text, static_cast<int>(date.year()), 4);
  appendDigits(text.append("-"), static_cast<unsigned>(date.month()), 2);
  appendDigits(text.append("-"), static_cast<unsigned>(date.day()), 2);
  return text;
}

std::string textOf(const Moment& moment) {
  std::string text = textOf(moment.day) + "T";
  appendTime(text, moment.time, ":", ".");
  return text;
}

std::string fileTime(const Moment& moment) {
  std::string text;
  appendTime(text, moment.time, "", "-");
  return text;
}

std::string idPrefix(Day day) {
  const std::string text = textOf(day);
  return text.substr(2, 2) + text.substr(5, 2) + text.substr(8, 2) + "-";
}

std::optional<Day> dayFrom(std::string_view text) {
  constexpr std::size_t length = 10;
  if (text.size() != length) return std::nullopt;
  if (text[4] == '-' && text[7] == '-') return dayOf(digitsOf(text, 0, 4), digitsOf(text, 5, 2), digitsOf(text, 8, 2));
  if (text[2] == '/' && text[5] == '/') return dayOf(digitsOf(text, 6, 4), digitsOf(text, 3, 2), digitsOf(text, 0, 2));
  return std::nullopt;
}

std::optional<Day> dayOfId(std::string_view id) {
  const auto year = digitsOf(id, 0, 2);
  if (!year || id.substr(0, 7).find('-') != 6) return std::nullopt;
  return dayOf(century + *year, digitsOf(id, 2, 2), digitsOf(id, 4, 2));
}

std::string dayFile(std::string_view folder, Day day) {
  return std::string(folder) + "\\" + textOf(day) + std::string(extension);
}

std::vector<Day> daysIn(platform::Files& files, std::string_view folder) {
  std::vector<Day> days;
  if (!files.folderExists(folder)) return days;
  for (const std::string_view name : files.list(folder).value_or(std::vector<std::string>())) {
    if (!name.ends_with(extension)) continue;
    const std::string_view date = name.substr(0, name.size() - extension.size());
    if (const auto day = dayFrom(date); day && date == textOf(*day)) days.push_back(*day);
  }
  std::ranges::sort(days);
  return days;
}

}  // namespace tellaxis
