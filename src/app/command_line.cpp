// Command line: reading and checking the arguments.
#include "app/command_line.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <optional>

#include "app/commands/diary_arguments.h"
#include "platform/program.h"

namespace tellaxis {

namespace {

constexpr int longestInterval = 3'600'000;

EndAtOnce unusable(std::string_view program, std::string_view complaint) {
  return {.status = statusUnusable, .text = std::string(program) + ": " + std::string(complaint) + "\n"};
}

std::string withoutTrailingSeparators(std::string folder) {
  while (folder.size() > 1 && (folder.back() == '/' || folder.back() == '\\')) folder.pop_back();
  return folder;
}

bool isFolder(const std::string& folder) {
  std::error_code failure;
  return std::filesystem::is_directory(std::u8string(folder.begin(), folder.end()), failure);
}

std::optional<std::pair<char, std::string>> driveFrom(const std::string& text) {
  if (text.size() < 3 || text[1] != '=') return std::nullopt;
  const char letter = text[0] >= 'a' && text[0] <= 'z' ? static_cast<char>(text[0] - 'a' + 'A') : text[0];
  if (letter < 'A' || letter > 'Z') return std::nullopt;
  return std::pair(letter, withoutTrailingSeparators(text.substr(2)));
}

std::optional<int> intervalFrom(const std::string& text) {
  int interval = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), interval);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  if (interval < 1 || interval > longestInterval) return std::nullopt;
  return interval;
}

/// The number that the `count` digits of `text` from `first` on write.
std::optional<int> digitsOf(std::string_view text, std::size_t first, std::size_t count) {
  const std::string_view digits = text.substr(first, count);
  if (digits.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  int number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

/// A minute that the calendar has, written "YYYY-MM-DD HH:MM".
std::optional<platform::DateTime> minuteFrom(std::string_view text) {
  constexpr std::string_view form = "0000-00-00 00:00";
  if (text.size() != form.size()) return std::nullopt;
  for (const std::size_t sign : {4U, 7U, 10U, 13U})
    if (text[sign] != form[sign]) return std::nullopt;
  const auto year = digitsOf(text, 0, 4);
  const auto month = digitsOf(text, 5, 2);
  const auto day = digitsOf(text, 8, 2);
  const auto hour = digitsOf(text, 11, 2);
  const auto minute = digitsOf(text, 14, 2);
  if (!year || !month || !day || !hour || !minute || *hour > 23 || *minute > 59) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  if (!date.ok()) return std::nullopt;
  const std::chrono::weekday weekday{std::chrono::sys_days(date)};
  return platform::DateTime{.year = *year,
                            .month = *month,
                            .day = *day,
                            .weekday = static_cast<int>(weekday.c_encoding()),
                            .hour = *hour,
                            .minute = *minute};
}

constexpr std::string_view stationRoles[] = {"CLIENT", "SERVER"};

/// Reads what is only the scheduled operations' own; a complaint where something is wrong.
std::optional<std::string> readScheduleArguments(const Arguments& arguments, CommandLine& line) {
  if (const std::string* const role = arguments.value("postazione")) {
    if (std::ranges::find(stationRoles, *role) == std::end(stationRoles))
      return "--postazione " + *role + ": si scrive SERVER o CLIENT";
    line.stationRole = *role;
  }
  if (const std::string* const now = arguments.value("now")) {
    line.now = minuteFrom(*now);
    if (!line.now) return "--now " + *now + ": si scrive \"AAAA-MM-GG HH:MM\"";
  }
  return std::nullopt;
}

/// The devices that may be tried, by their names here. A fiscal receipt is never one.
std::optional<std::string> readCheckArguments(const Arguments& arguments, CommandLine& line) {
  line.check = {.json = arguments.has("json"), .network = arguments.has("rete")};
  if (arguments.command != Command::prova) return std::nullopt;
  const auto device = deviceNamed(arguments.word);
  if (!device || *device == Device::fiscalPrinter)
    return "prova " + arguments.word + ": si scrive display, preconto o ricevuta";
  line.tried = *device;
  return std::nullopt;
}

/// Reads which computer the program is to see, and how often it looks.
std::optional<std::string> readSystemArguments(const Arguments& arguments, CommandLine& line) {
  platform::SystemOptions& system = line.system;
  const std::string* const mainFolder = arguments.value("main-folder");
  system.mainFolder = withoutTrailingSeparators(mainFolder != nullptr ? *mainFolder : platform::programFolder());
  if (!isFolder(system.mainFolder)) return "--main-folder " + system.mainFolder + ": la cartella non esiste";
  for (const auto& [option, text] : arguments.options) {
    if (std::string_view(option->name) != "drive") continue;
    const auto drive = driveFrom(text);
    if (!drive) return "--drive " + text + ": si scrive L=CARTELLA, per esempio C=/srv/cassa";
    system.drives[drive->first] = drive->second;
  }
  if (const std::string* const text = arguments.value("interval")) {
    const auto interval = intervalFrom(*text);
    if (!interval) return "--interval " + *text + ": servono millisecondi da 1 a 3600000";
    line.pollingInterval = *interval;
  }
  if (const std::string* const file = arguments.value("devices")) system.devicesFile = *file;
  if (const std::string* const name = arguments.value("locale")) system.localeName = *name;
  system.trace = arguments.has("trace");
  return std::nullopt;
}

}  // namespace

std::variant<CommandLine, EndAtOnce> readCommandLine(std::string_view program, std::span<const std::string> words) {
  const auto read = argumentsFrom(words);
  if (const auto* const complaint = std::get_if<std::string>(&read)) return unusable(program, *complaint);
  const Arguments& arguments = std::get<Arguments>(read);
  if (arguments.has("help")) return EndAtOnce{.text = helpFor(program)};
  if (arguments.has("version")) return EndAtOnce{.text = "Tellaxis " TELLAXIS_VERSION "\n"};
  CommandLine line{.command = arguments.command, .endsOther = arguments.has("esci")};
  if (const auto complaint = readSystemArguments(arguments, line)) return unusable(program, *complaint);
  if (const auto complaint = readScheduleArguments(arguments, line)) return unusable(program, *complaint);
  if (const auto complaint = readDiaryArguments(arguments, line.diary)) return unusable(program, *complaint);
  if (const auto complaint = readCheckArguments(arguments, line)) return unusable(program, *complaint);
  return line;
}

}  // namespace tellaxis
