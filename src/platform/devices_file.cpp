// Devices file: reading it from TOML, with every mistake named by line and column.
#include "platform/devices_file.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <utility>

// Tables within tables are taken apart by calls within calls: the stack limits how deep they may lie.
#define TOML_MAX_NESTED_VALUES 16
#define TOML_EXCEPTIONS 0
#include <toml++/toml.h>

#include "text/code_page.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

constexpr std::size_t largestFile = std::size_t{256} << 10;
/// Each of them may be a table within a table.
constexpr std::ptrdiff_t mostDotsOfLine = 200;
constexpr std::size_t longestShown = 60;
constexpr int highestSerialPort = 256;
constexpr int highestKeepDays = 36'500;

/// Carries a mistake up to the one place that makes a message of it.
struct Mistake {
  TextPosition position;
  std::string reason;
};

TextPosition positionOf(const toml::source_region& source) { return {source.begin.line, source.begin.column}; }

/// The user's own words as they stand in a message of one line: control characters hidden, and not all of a long text.
std::string shown(std::string_view text) {
  std::size_t end = std::min(text.size(), longestShown);
  while (end < text.size() && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  std::string words(text.substr(0, end));
  std::replace_if(
      words.begin(), words.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
  return "\"" + words + (end < text.size() ? "...\"" : "\"");
}

/// What no real devices file has, and what reading it could not be relied on to survive.
void refuseExcess(std::string_view text) {
  if (text.size() > largestFile) throw Mistake{{}, "il file è troppo grande: al massimo 256 KB"};
  TextPosition position;
  for (std::size_t from = 0; from < text.size(); ++position.line) {
    const std::string_view line = text.substr(from, text.find('\n', from) - from);
    if (std::count(line.begin(), line.end(), '.') > mostDotsOfLine) throw Mistake{position, "troppi punti nella riga"};
    from += line.size() + 1;
  }
}

void refuseUnknownKeys(const toml::table& table, std::initializer_list<std::string_view> known) {
  for (const auto& [key, value] : table)
    if (std::find(known.begin(), known.end(), key.str()) == known.end())
      throw Mistake{positionOf(key.source()), "chiave sconosciuta " + shown(key.str())};
}

const toml::node& required(const toml::table& table, std::string_view key) {
  const toml::node* node = table.get(key);
  if (node == nullptr) throw Mistake{positionOf(table.source()), "manca la chiave \"" + std::string(key) + "\""};
  return *node;
}

std::string textOf(const toml::node& node, std::string_view key) {
  const auto* text = node.as_string();
  if (text == nullptr)
    throw Mistake{positionOf(node.source()), "\"" + std::string(key) + "\" deve essere un testo fra virgolette"};
  const bool hasControl = std::any_of(text->get().begin(), text->get().end(), [](char c) { return c >= 0 && c < ' '; });
  if (text->get().empty() || hasControl)
    throw Mistake{positionOf(node.source()), "\"" + std::string(key) + "\" non ha un valore utilizzabile"};
  return text->get();
}

std::string requiredText(const toml::table& table, std::string_view key) { return textOf(required(table, key), key); }

/// The text of `key`; empty where the key is absent.
std::string optionalText(const toml::table& table, std::string_view key) {
  const toml::node* node = table.get(key);
  return node == nullptr ? std::string() : textOf(*node, key);
}

/// Whether `key` is switched on.
bool isOn(const toml::table& table, std::string_view key) {
  const toml::node* node = table.get(key);
  if (node == nullptr) return false;
  const auto* boolean = node->as_boolean();
  if (boolean == nullptr)
    throw Mistake{positionOf(node->source()), "\"" + std::string(key) + "\" deve essere true o false"};
  return boolean->get();
}

/// The number of `node`, which has to be one from 1 to `highest`.
int numberOf(const toml::node& node, std::string_view key, int highest) {
  const auto* number = node.as_integer();
  if (number == nullptr || number->get() < 1 || number->get() > highest)
    throw Mistake{positionOf(node.source()),
                  "\"" + std::string(key) + "\" deve essere un numero da 1 a " + std::to_string(highest)};
  return static_cast<int>(number->get());
}

std::string codePageText(const toml::table& table, std::string_view key) {
  const auto text = codePageFromUtf8(requiredText(table, key));
  if (!text)
    throw Mistake{positionOf(required(table, key).source()),
                  "\"" + std::string(key) + "\" ha un carattere che le stampanti non conoscono"};
  return *text;
}

/// Takes `prefix` from the front of `text`, where it is there and something follows.
bool takePrefix(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix) || text.size() == prefix.size()) return false;
  text.remove_prefix(prefix.size());
  return true;
}

std::optional<PrinterTarget> networkTarget(std::string_view address) {
  const std::size_t colon = address.rfind(':');
  if (colon == std::string_view::npos || colon == 0) return std::nullopt;
  std::string_view host = address.substr(0, colon);
  const std::string_view number = address.substr(colon + 1);
  if (host.size() > 2 && host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
  std::uint16_t port = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), port);
  if (result.ec != std::errc{} || result.ptr != number.data() + number.size() || port == 0) return std::nullopt;
  return EscPosNetworkTarget{std::string(host), port};
}

/// A device, and the line settings behind its last colon where something with digits and commas stands there; device
/// names have colons too.
std::optional<PrinterTarget> deviceTarget(std::string_view text) {
  const std::size_t colon = text.rfind(':');
  std::string_view settings = text.substr(colon == std::string_view::npos ? text.size() : colon + 1);
  const bool hasSettings = !settings.empty() && settings.front() >= '0' && settings.front() <= '9' &&
                           settings.find(',') != std::string_view::npos;
  if (!hasSettings) return EscPosDeviceTarget{std::string(text), std::nullopt};
  constexpr std::string_view flowEnding = ",CTS";
  const bool flow = settings.size() > flowEnding.size() &&
                    equalIgnoringAsciiCase(settings.substr(settings.size() - flowEnding.size()), flowEnding);
  if (flow) settings.remove_suffix(flowEnding.size());
  auto line = lineSettingsFromText(settings);
  if (!line || colon == 0) return std::nullopt;
  if (flow) line->flowControl = FlowControl::cts;
  return EscPosDeviceTarget{std::string(text.substr(0, colon)), line};
}

std::optional<PrinterTarget> targetFrom(std::string_view text) {
  if (takePrefix(text, "folder:")) return FolderTarget{std::string(text)};
  if (takePrefix(text, "cups:")) return QueueTarget{std::string(text)};
  if (!takePrefix(text, "escpos:")) return std::nullopt;
  if (takePrefix(text, "tcp://")) return networkTarget(text);
  if (takePrefix(text, "cups:")) return EscPosQueueTarget{std::string(text)};
  if (text == "cups:" || text.find("://") != std::string_view::npos) return std::nullopt;
  return deviceTarget(text);
}

PrinterDefinition printerFrom(const toml::table& table) {
  refuseUnknownKeys(table, {"name", "port", "target", "wait_for_paper"});
  InstalledPrinter printer{codePageText(table, "name"), codePageText(table, "port")};
  const std::string text = requiredText(table, "target");
  const TextPosition position = positionOf(required(table, "target").source());
  auto target = targetFrom(text);
  if (!target) throw Mistake{position, "destinazione sconosciuta " + shown(text)};
  return {std::move(printer), std::move(*target), position, isOn(table, "wait_for_paper")};
}

SerialDefinition serialFrom(const toml::table& table, const std::vector<SerialDefinition>& before) {
  refuseUnknownKeys(table, {"port", "device"});
  const toml::node& node = required(table, "port");
  const int port = numberOf(node, "port", highestSerialPort);
  if (std::any_of(before.begin(), before.end(), [&](const SerialDefinition& other) { return other.port == port; }))
    throw Mistake{positionOf(node.source()), "la porta " + std::to_string(port) + " è già definita"};
  return {port, requiredText(table, "device")};
}

/// Refuses `key` where the diary, without which it means nothing, is off.
void refuseWithoutDiary(const toml::table& table, std::string_view key) {
  const toml::node* node = table.get(key);
  if (node != nullptr && !table.contains("diary"))
    throw Mistake{positionOf(node->source()), "\"" + std::string(key) + "\" vale solo insieme a \"diary\""};
}

std::string roleFrom(const toml::table& table) {
  std::string role = optionalText(table, "role");
  if (!role.empty() && role != "SERVER" && role != "CLIENT")
    throw Mistake{positionOf(required(table, "role").source()), "\"role\" deve essere \"SERVER\" o \"CLIENT\""};
  return role;
}

BridgeOptions optionsFrom(const toml::table& table) {
  refuseUnknownKeys(table, {"diary", "keep_days", "archive", "keep_waiting", "prompt", "midnight", "metrics", "role"});
  BridgeOptions options;
  options.diary = optionalText(table, "diary");
  if (const toml::node* days = table.get("keep_days")) options.keepDays = numberOf(*days, "keep_days", highestKeepDays);
  options.archive = isOn(table, "archive");
  for (const std::string_view key : {"keep_days", "archive"}) refuseWithoutDiary(table, key);
  options.keepWaiting = isOn(table, "keep_waiting");
  options.prompt = isOn(table, "prompt");
  options.midnight = isOn(table, "midnight");
  options.metrics = optionalText(table, "metrics");
  options.role = roleFrom(table);
  return options;
}

/// Calls `take` with each table of the array of tables `name`.
template <class Take>
void forEachTable(const toml::table& root, std::string_view name, Take take) {
  const toml::node* node = root.get(name);
  if (node == nullptr) return;
  const toml::array* array = node->as_array();
  if (array == nullptr)
    throw Mistake{positionOf(node->source()), "si scrive [[" + std::string(name) + "]], con due parentesi"};
  for (const toml::node& entry : *array) {
    const toml::table* table = entry.as_table();
    if (table == nullptr)
      throw Mistake{positionOf(entry.source()), "si scrive [[" + std::string(name) + "]], con due parentesi"};
    take(*table);
  }
}

DevicesFile devicesFrom(const toml::table& root) {
  refuseUnknownKeys(root, {"printer", "serial", "bridge"});
  DevicesFile devices;
  forEachTable(root, "printer", [&](const toml::table& table) { devices.printers.push_back(printerFrom(table)); });
  forEachTable(root, "serial", [&](const toml::table& table) {
    devices.serialLines.push_back(serialFrom(table, devices.serialLines));
  });
  if (const toml::node* bridge = root.get("bridge")) {
    if (!bridge->is_table()) throw Mistake{positionOf(bridge->source()), "si scrive [bridge], con una parentesi sola"};
    devices.options = optionsFrom(*bridge->as_table());
  }
  return devices;
}

std::filesystem::path pathOf(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

}  // namespace

std::variant<DevicesFile, DevicesFileError> parseDevicesFile(std::string_view text, const std::string& file) {
  try {
    refuseExcess(text);
    const toml::parse_result parsed = toml::parse(text, file);
    if (!parsed) return devicesFileError(file, positionOf(parsed.error().source()), "sintassi TOML non valida");
    return devicesFrom(parsed.table());
  } catch (const Mistake& mistake) {
    return devicesFileError(file, mistake.position, mistake.reason);
  }
}

std::variant<DevicesFile, DevicesFileError> readDevicesFile(const std::string& file) {
  const DevicesFileError unreadable{file + ": il file non si può leggere"};
  std::error_code ignored;
  // A pipe would be waited for.
  const auto type = std::filesystem::status(pathOf(file), ignored).type();
  if (type == std::filesystem::file_type::directory || type == std::filesystem::file_type::fifo) return unreadable;
  std::ifstream stream(pathOf(file), std::ios::binary);
  if (!stream) return unreadable;
  std::string text(largestFile + 1, '\0');
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  if (stream.bad()) return unreadable;
  text.resize(static_cast<std::size_t>(stream.gcount()));
  return parseDevicesFile(text, file);
}

std::optional<std::string> devicesFileOf(const std::optional<std::string>& named, const std::string& mainFolder) {
  if (named) return named;
  std::string standard = underMainFolder("devices.toml", mainFolder);
  std::error_code ignored;
  if (!std::filesystem::exists(pathOf(standard), ignored)) return std::nullopt;
  return standard;
}

DevicesFileError devicesFileError(const std::string& file, TextPosition position, std::string_view reason) {
  return {file + ", riga " + std::to_string(position.line) + ", colonna " + std::to_string(position.column) + ": " +
          std::string(reason)};
}

std::string underMainFolder(const std::string& path, const std::string& mainFolder) {
  const std::u8string joined = (pathOf(mainFolder) / pathOf(path)).u8string();
  return {joined.begin(), joined.end()};
}

}  // namespace tellaxis::platform
