// Options: the tables, reading by them, and the help made of them.
#include "app/options.h"

#include <getopt.h>

#include <algorithm>
#include <optional>

namespace tellaxis {

namespace {

constexpr std::uint32_t bitOf(Command command) { return 1U << static_cast<unsigned>(command); }

constexpr std::uint32_t pianificate = bitOf(Command::pianificate);
constexpr std::uint32_t diario = bitOf(Command::diario);
constexpr std::uint32_t ristampa = bitOf(Command::ristampa);
constexpr std::uint32_t controlla = bitOf(Command::controlla);

constexpr NamedCommand commands[] = {
    {.name = "ftp",
     .command = Command::ftp,
     .help = "esegue una volta il trasferimento FTP richiesto nel\n"
             "file delle impostazioni; esce con 0 se riuscito,\n"
             "con 1 altrimenti"},
    {.name = "pianificate",
     .command = Command::pianificate,
     .help = "esegue una volta le operazioni pianificate per\n"
             "questo minuto e quella richiesta a mano"},
    {.name = "diario", .command = Command::diario, .help = "mostra i lavori del diario, di norma quelli di oggi"},
    {.name = "ristampa", .command = Command::ristampa, .word = "ID", .help = "rimette in coda un lavoro del diario"},
    {.name = "controlla",
     .command = Command::controlla,
     .help = "dice che cosa non va nell'installazione, senza\n"
             "cambiare nulla; esce con 1 se c'è un errore"},
    {.name = "prova",
     .command = Command::prova,
     .word = "NOME",
     .help = "manda un lavoro di prova a display, preconto o\n"
             "ricevuta e dice che cosa ne è stato"},
    {.name = "porte", .command = Command::porte, .help = "elenca le porte seriali e le stampanti"},
};

constexpr Option options[] = {
    {.name = "main-folder",
     .value = "CARTELLA",
     .commands = 0,
     .help = "cartella principale (di norma quella del programma)"},
    {.name = "drive",
     .value = "L=CARTELLA",
     .commands = 0,
     .help = "Linux: la cartella che fa da unità L:; ripetibile\n"
             "(di norma C = <cartella principale>/drive_c)",
     .repeatable = true},
    {.name = "devices",
     .value = "FILE",
     .commands = 0,
     .help = "file delle periferiche\n"
             "(di norma <cartella principale>/devices.toml, se c'è)"},
    {.name = "interval",
     .value = "MS",
     .commands = 0,
     .help = "intervallo di controllo in millisecondi (di norma 500)"},
    {.name = "locale", .value = "NOME", .commands = 0, .help = "impostazioni internazionali, per esempio it_IT"},
    {.name = "trace", .value = "", .commands = 0, .help = "scrive su standard error ogni passo non riuscito"},
    {.name = "esci",
     .value = "",
     .commands = 0,
     .help = "chiede di chiudersi alla copia che serve la cartella, quando ha\n"
             "finito il lavoro in corso, e aspetta; esce con 0 se si è chiusa,\n"
             "con 4 se non ce n'era una, con 1 se dopo 2 minuti c'è ancora"},
    {.name = "help", .value = "", .commands = 0, .help = "questo testo"},
    {.name = "version", .value = "", .commands = 0, .help = "la versione"},
    {.name = "postazione",
     .value = "RUOLO",
     .commands = pianificate,
     .help = "SERVER o CLIENT (di norma quello\ndi role in devices.toml, o CLIENT)"},
    {.name = "now", .value = "\"AAAA-MM-GG HH:MM\"", .commands = pianificate, .help = "finge che sia questo minuto"},
    {.name = "dal", .value = "GIORNO", .commands = diario, .help = "dal giorno, AAAA-MM-GG o GG/MM/AAAA"},
    {.name = "al", .value = "GIORNO", .commands = diario, .help = "fino al giorno"},
    {.name = "dispositivo", .value = "NOME", .commands = diario, .help = "fiscale, display, ricevuta o preconto"},
    {.name = "problemi", .value = "", .commands = diario, .help = "solo i lavori a cui qualcuno deve badare"},
    {.name = "json", .value = "", .commands = diario | controlla, .help = "in JSON, per un altro programma"},
    {.name = "rete", .value = "", .commands = controlla, .help = "si collega anche al server FTP, senza trasferire"},
    {.name = "fiscale", .value = "", .commands = ristampa, .help = "anche un lavoro del misuratore fiscale"},
    {.name = "anche-se-emesso",
     .value = "",
     .commands = ristampa,
     .help = "anche se lo scontrino è uscito o può essere uscito"},
};

/// Where the help's explanations begin.
constexpr std::size_t commandColumn = 38;
constexpr std::size_t optionColumn = 27;

std::string dashed(const Option& option) { return std::string("--") + option.name; }

/// The names of an option's commands, as a sentence lists them.
std::string commandsOf(const Option& option) {
  std::string names;
  for (const NamedCommand& command : commands)
    if ((option.commands & bitOf(command.command)) != 0)
      names += (names.empty() ? "" : " e ") + std::string(command.name);
  return names;
}

/// Reads the options; the words that are none are left in `words`.
std::optional<std::string> readOptions(std::span<const std::string> given, Arguments& arguments,
                                       std::vector<std::string>& words) {
  std::vector<::option> table;
  for (const Option& option : options)
    table.push_back({option.name, option.value.empty() ? no_argument : required_argument, nullptr, 0});
  table.push_back({});
  std::string program = "tellaxis";
  std::vector<std::string> copy(given.begin(), given.end());
  std::vector<char*> pointers{program.data()};
  for (std::string& word : copy) pointers.push_back(word.data());
  const int count = static_cast<int>(pointers.size());
  pointers.push_back(nullptr);
  // From the beginning, whatever was read before; our own complaints alone; words in their place.
  optind = 0;
  opterr = 0;
  for (int place = -1, kind = 0; (kind = ::getopt_long(count, pointers.data(), "-:h", table.data(), &place)) != -1;) {
    if (kind == 1) {
      words.emplace_back(optarg);
      continue;
    }
    if (kind == ':' || kind == '?') {
      // Some systems call the value that a switch cannot take a missing one.
      const std::string word = pointers[optind - 1];
      const bool lacksValue = kind == ':' && word.find('=') == std::string::npos;
      return (lacksValue ? "argomento senza valore: " : "argomento sconosciuto: ") + word;
    }
    const Option& option =
        kind == 'h' ? *std::ranges::find(options, std::string_view("help"), &Option::name) : options[place];
    if (!option.repeatable && arguments.has(option.name)) return dashed(option) + ": basta una volta";
    arguments.options.emplace_back(&option, optarg != nullptr ? optarg : "");
  }
  for (int rest = optind; rest < count; ++rest) words.emplace_back(pointers[rest]);
  return std::nullopt;
}

/// Takes the command and its word from the words that are no options.
std::optional<std::string> readCommand(const std::vector<std::string>& words, Arguments& arguments) {
  if (words.empty()) return std::nullopt;
  const auto* const named = std::ranges::find(commands, std::string_view(words.front()), &NamedCommand::name);
  if (named == std::end(commands)) return "argomento sconosciuto: " + words.front();
  arguments.command = named->command;
  const std::size_t most = named->word.empty() ? 1 : 2;
  if (words.size() > most) return "argomento sconosciuto: " + words[most];
  if (words.size() == 2) arguments.word = words.back();
  return std::nullopt;
}

/// The text with its lines beginning at this column, behind `head`.
std::string aligned(std::string head, std::string_view text, std::size_t column) {
  head.resize(std::max(head.size() + 1, column), ' ');
  for (const char sign : text) {
    head += sign;
    if (sign == '\n') head.append(column, ' ');
  }
  return head + '\n';
}

std::string optionHelp(const Option& option) {
  std::string head = "  " + dashed(option);
  if (!option.value.empty()) head += " " + std::string(option.value);
  return aligned(head, option.help, optionColumn);
}

}  // namespace

const std::string* Arguments::value(std::string_view name) const {
  const auto given =
      std::ranges::find(options, name, [](const auto& entry) { return std::string_view(entry.first->name); });
  return given == options.end() ? nullptr : &given->second;
}

std::variant<Arguments, std::string> argumentsFrom(std::span<const std::string> words) {
  Arguments arguments;
  std::vector<std::string> others;
  if (auto complaint = readOptions(words, arguments, others)) return *complaint;
  if (arguments.has("help") || arguments.has("version")) return arguments;
  if (auto complaint = readCommand(others, arguments)) return *complaint;
  for (const auto& [option, value] : arguments.options)
    if (option->commands != 0 && (option->commands & bitOf(arguments.command)) == 0)
      return dashed(*option) + ": vale solo per " + commandsOf(*option);
  return arguments;
}

std::string helpFor(std::string_view program) {
  const std::string use = std::string(program) + " [opzioni]";
  std::string text = aligned("Uso: " + use, "il ponte verso le periferiche, fino a Ctrl-C", commandColumn);
  for (const NamedCommand& command : commands) {
    std::string head = "     " + use + " " + std::string(command.name);
    if (!command.word.empty()) head += " " + std::string(command.word);
    text += aligned(head, command.help, commandColumn);
  }
  text += "\nOpzioni:\n";
  for (const Option& option : options)
    if (option.commands == 0) text += optionHelp(option);
  for (const NamedCommand& command : commands) {
    std::string own;
    for (const Option& option : options)
      if ((option.commands & bitOf(command.command)) != 0) own += optionHelp(option);
    if (!own.empty()) text += "\nSolo per " + std::string(command.name) + ":\n" + own;
  }
  return text;
}

}  // namespace tellaxis
