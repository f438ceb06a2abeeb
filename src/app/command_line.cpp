// Command line: reading and checking the arguments.
#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

#include "platform/resident.h"

namespace tellaxis {

namespace {

constexpr std::string_view help = R"(Uso: @ [opzioni]                     il ponte verso le periferiche, fino a Ctrl-C

Opzioni:
  --main-folder CARTELLA   cartella principale (di norma quella del programma)
  --drive L=CARTELLA       Linux: la cartella che fa da unità L:; ripetibile
                           (di norma C = <cartella principale>/drive_c)
  --devices FILE           file delle periferiche
                           (di norma <cartella principale>/devices.toml, se c'è)
  --interval MS            intervallo di controllo in millisecondi (di norma 500)
  --locale NOME            impostazioni internazionali, per esempio it_IT
  --trace                  scrive su standard error ogni passo non riuscito
  --help                   questo testo
  --version                la versione
)";

constexpr int longestInterval = 3'600'000;

/// Arguments as the library fills them in, not checked yet.
struct RawArguments {
  std::optional<std::string> mainFolder;
  std::vector<std::string> drives;
  std::optional<std::string> devicesFile;
  std::string interval = "500";
  std::optional<std::string> localeName;
  bool trace = false;
  bool help = false;
  bool version = false;
};

void declare(CLI::App& application, RawArguments& raw) {
  application.set_help_flag();
  application.add_option("--main-folder", raw.mainFolder);
  application.add_option("--drive", raw.drives)->allow_extra_args(false);
  application.add_option("--devices", raw.devicesFile);
  application.add_option("--interval", raw.interval);
  application.add_option("--locale", raw.localeName);
  application.add_flag("--trace", raw.trace);
  application.add_flag("--help,-h", raw.help);
  application.add_flag("--version", raw.version);
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

std::string helpFor(std::string_view program) {
  std::string text(help);
  return text.replace(text.find('@'), 1, program);
}

std::string withoutTrailingSeparators(std::string folder) {
  while (folder.size() > 1 && (folder.back() == '/' || folder.back() == '\\')) folder.pop_back();
  return folder;
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

std::variant<CommandLine, EndAtOnce> checked(std::string_view program, const RawArguments& raw) {
  CommandLine line;
  line.system.mainFolder = withoutTrailingSeparators(raw.mainFolder.value_or(platform::programFolder()));
  if (line.system.mainFolder.empty()) return unusable(program, "--main-folder: manca la cartella");
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
  return line;
}

}  // namespace

std::variant<CommandLine, EndAtOnce> readCommandLine(std::string_view program, std::span<const std::string> arguments) {
  RawArguments raw;
  CLI::App application;
  declare(application, raw);
  try {
    application.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ParseError& error) {
    return unusable(program, complaintOf(error, application));
  }
  if (raw.help) return EndAtOnce{.text = helpFor(program)};
  if (raw.version) return EndAtOnce{.text = "Tellaxis " TELLAXIS_VERSION "\n"};
  return checked(program, raw);
}

}  // namespace tellaxis
