// Command line: reading and checking the arguments.
#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <optional>
#include <vector>

#include "app/diary_arguments.h"
#include "platform/program.h"

namespace tellaxis {

namespace {

constexpr std::string_view usage = R"(Uso: @ [opzioni]               il ponte verso le periferiche, fino a Ctrl-C
)";

constexpr std::string_view oneShotUsage =
    R"(     @ [opzioni] ftp           esegue una volta il trasferimento FTP richiesto
                                      nel file delle impostazioni; esce con 0 se riuscito,
                                      con 1 altrimenti
     @ [opzioni] pianificate [--postazione SERVER|CLIENT]
                                      esegue una volta le operazioni pianificate per
                                      questo minuto e quella richiesta a mano
     @ [opzioni] diario [--dal GIORNO] [--al GIORNO] [--dispositivo NOME] [--problemi]
                        [--json]      mostra i lavori del diario, di norma quelli di oggi
     @ [opzioni] ristampa ID [--fiscale] [--anche-se-emesso]
                                      rimette in coda un lavoro del diario
)";

constexpr std::string_view options = R"(
Opzioni:
  --main-folder CARTELLA   cartella principale (di norma quella del programma)
  --drive L=CARTELLA       Linux: la cartella che fa da unità L:; ripetibile
                           (di norma C = <cartella principale>/drive_c)
  --devices FILE           file delle periferiche
                           (di norma <cartella principale>/devices.toml, se c'è)
  --interval MS            intervallo di controllo in millisecondi (di norma 500)
  --locale NOME            impostazioni internazionali, per esempio it_IT
  --trace                  scrive su standard error ogni passo non riuscito
  --esci                   chiede di chiudersi alla copia che serve la cartella, quando ha
                           finito il lavoro in corso, e aspetta; esce con 0 se si è chiusa,
                           con 4 se non ce n'era una, con 1 se dopo 2 minuti c'è ancora
  --help                   questo testo
  --version                la versione
)";

constexpr std::string_view oneShotOptions = R"(
Solo per pianificate:
  --postazione RUOLO       SERVER o CLIENT (di norma CLIENT)
  --now "AAAA-MM-GG HH:MM" finge che sia questo minuto

Solo per diario:
  --dal, --al GIORNO       AAAA-MM-GG o GG/MM/AAAA
  --dispositivo NOME       fiscale, display, ricevuta o preconto
  --problemi               solo i lavori a cui qualcuno deve badare
  --json                   un oggetto JSON per riga

Solo per ristampa:
  --fiscale                anche un lavoro del misuratore fiscale
  --anche-se-emesso        anche se lo scontrino è uscito o può essere uscito
)";

constexpr int longestInterval = 3'600'000;

/// Arguments as the library fills them in, not checked yet.
struct RawArguments {
  std::optional<std::string> mainFolder;
  std::vector<std::string> drives;
  std::optional<std::string> devicesFile;
  std::string interval = "500";
  std::optional<std::string> localeName;
  std::optional<std::string> command;
  std::optional<std::string> stationRole;
  std::optional<std::string> now;
  RawDiaryArguments diary;
  bool trace = false;
  bool endsOther = false;
  bool help = false;
  bool version = false;
};

void declare(CLI::App& application, RawArguments& raw, OneShots oneShots) {
  application.set_help_flag();
  application.add_option("--main-folder", raw.mainFolder);
  application.add_option("--drive", raw.drives)->allow_extra_args(false);
  application.add_option("--devices", raw.devicesFile);
  application.add_option("--interval", raw.interval);
  application.add_option("--locale", raw.localeName);
  application.add_flag("--trace", raw.trace);
  application.add_flag("--esci", raw.endsOther);
  application.add_flag("--help,-h", raw.help);
  application.add_flag("--version", raw.version);
  if (oneShots == OneShots::refused) return;
  application.add_option("comando", raw.command);
  application.add_option("--postazione", raw.stationRole);
  application.add_option("--now", raw.now);
  declareDiaryArguments(application, raw.diary);
}

EndAtOnce unusable(std::string_view program, std::string_view complaint) {
  return {.status = statusUnusable, .text = std::string(program) + ": " + std::string(complaint) + "\n"};
}

/// The library's English complaint in our words; it begins with the argument that it is about.
std::string complaintOf(const CLI::ParseError& error, const CLI::App& application) {
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr)
    return "argomento sconosciuto: " + application.remaining().front();
  const std::string text = error.what();
  return "argomento non valido o senza valore: " + text.substr(0, text.find(':'));
}

std::string helpFor(std::string_view program, OneShots oneShots) {
  std::string text(usage);
  if (oneShots == OneShots::offered) text += oneShotUsage;
  text += options;
  if (oneShots == OneShots::offered) text += oneShotOptions;
  for (std::size_t sign = text.find('@'); sign != std::string::npos; sign = text.find('@', sign + program.size()))
    text.replace(sign, 1, program);
  return text;
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

struct NamedCommand {
  std::string_view name;
  Command command;
};

constexpr NamedCommand namedCommands[] = {{"ftp", Command::ftp},
                                          {"pianificate", Command::pianificate},
                                          {"diario", Command::diario},
                                          {"ristampa", Command::ristampa}};
constexpr std::string_view stationRoles[] = {"CLIENT", "SERVER"};

/// Reads the command and what is only its own; a complaint where something is wrong.
std::optional<std::string> readCommand(const RawArguments& raw, CommandLine& line) {
  if (raw.command) {
    const auto* const named = std::ranges::find(namedCommands, *raw.command, &NamedCommand::name);
    if (named == std::end(namedCommands)) return "argomento sconosciuto: " + *raw.command;
    line.command = named->command;
  }
  const bool scheduled = line.command == Command::pianificate;
  if (raw.stationRole) {
    if (!scheduled) return "--postazione: vale solo per pianificate";
    if (std::ranges::find(stationRoles, *raw.stationRole) == std::end(stationRoles))
      return "--postazione " + *raw.stationRole + ": si scrive SERVER o CLIENT";
    line.stationRole = *raw.stationRole;
  }
  if (raw.now) {
    if (!scheduled) return "--now: vale solo per pianificate";
    line.now = minuteFrom(*raw.now);
    if (!line.now) return "--now " + *raw.now + ": si scrive \"AAAA-MM-GG HH:MM\"";
  }
  const DiaryCommand diaryCommand = line.command == Command::diario     ? DiaryCommand::show
                                    : line.command == Command::ristampa ? DiaryCommand::reprint
                                                                        : DiaryCommand::none;
  return readDiaryArguments(raw.diary, diaryCommand, line.diary);
}

std::variant<CommandLine, EndAtOnce> checked(std::string_view program, const RawArguments& raw) {
  CommandLine line;
  line.system.mainFolder = withoutTrailingSeparators(raw.mainFolder.value_or(platform::programFolder()));
  if (!isFolder(line.system.mainFolder))
    return unusable(program, "--main-folder " + line.system.mainFolder + ": la cartella non esiste");
  for (const std::string& text : raw.drives) {
    const auto drive = driveFrom(text);
    if (!drive) return unusable(program, "--drive " + text + ": si scrive L=CARTELLA, per esempio C=/srv/cassa");
    line.system.drives[drive->first] = drive->second;
  }
  const auto interval = intervalFrom(raw.interval);
  if (!interval) return unusable(program, "--interval " + raw.interval + ": servono millisecondi da 1 a 3600000");
  line.pollingInterval = *interval;
  line.system.devicesFile = raw.devicesFile;
  line.system.localeName = raw.localeName;
  line.system.trace = raw.trace;
  line.endsOther = raw.endsOther;
  if (const auto complaint = readCommand(raw, line)) return unusable(program, *complaint);
  return line;
}

}  // namespace

std::variant<CommandLine, EndAtOnce> readCommandLine(std::string_view program, std::span<const std::string> arguments,
                                                     OneShots oneShots) {
  RawArguments raw;
  CLI::App application;
  declare(application, raw, oneShots);
  try {
    application.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ParseError& error) {
    return unusable(program, complaintOf(error, application));
  }
  if (raw.help) return EndAtOnce{.text = helpFor(program, oneShots)};
  if (raw.version) return EndAtOnce{.text = "Tellaxis " TELLAXIS_VERSION "\n"};
  return checked(program, raw);
}

}  // namespace tellaxis
