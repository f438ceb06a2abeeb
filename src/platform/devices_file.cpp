// Devices file: reading it from TOML, with every mistake named by line and column.
#include "platform/devices_file.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <utility>

#include "platform/devices_toml.h"
#include "text/code_page.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

constexpr int highestSerialPort = 256;
constexpr int highestKeepDays = 36'500;

std::string codePageText(const DeskTable& table, std::string_view key) {
  const auto text = codePageFromUtf8(table.requiredText(key));
  if (!text)
    throw DevicesMistake{placeOf(table.required(key).source()),
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

PrinterDefinition printerFrom(const DeskTable& table) {
  table.refuseUnknownKeys({"name", "port", "target", "wait_for_paper"});
  InstalledPrinter printer{codePageText(table, "name"), codePageText(table, "port"), table.isOn("wait_for_paper")};
  const std::string text = table.requiredText("target");
  TextPlace place = placeOf(table.required("target").source());
  auto target = targetFrom(text);
  if (!target) throw DevicesMistake{place, "destinazione sconosciuta " + shown(text)};
  return {std::move(printer), std::move(*target), std::move(place)};
}

SerialDefinition serialFrom(const DeskTable& table, const std::vector<SerialDefinition>& before) {
  table.refuseUnknownKeys({"port", "device"});
  const toml::node& node = table.required("port");
  const int port = numberOf(node, "port", highestSerialPort);
  if (std::any_of(before.begin(), before.end(), [&](const SerialDefinition& other) { return other.port == port; }))
    throw DevicesMistake{placeOf(node.source()), "la porta " + std::to_string(port) + " è già definita"};
  return {port, table.requiredText("device")};
}

/// Refuses `key` where the diary, without which it means nothing, is off.
void refuseWithoutDiary(const DeskTable& table, std::string_view key) {
  const toml::node* node = table.get(key);
  if (node != nullptr && table.get("diary") == nullptr)
    throw DevicesMistake{placeOf(node->source()), "\"" + std::string(key) + "\" vale solo insieme a \"diary\""};
}

std::string roleFrom(const DeskTable& table) {
  std::string role = table.optionalText("role");
  if (!role.empty() && role != "SERVER" && role != "CLIENT")
    throw DevicesMistake{placeOf(table.required("role").source()), "\"role\" deve essere \"SERVER\" o \"CLIENT\""};
  return role;
}

BridgeOptions optionsFrom(const DeskTable& table) {
  table.refuseUnknownKeys(
      {"diary", "keep_days", "archive", "keep_waiting", "prompt", "midnight", "event_log", "metrics", "role"});
  BridgeOptions options;
  options.diary = table.optionalText("diary");
  if (const toml::node* days = table.get("keep_days")) options.keepDays = numberOf(*days, "keep_days", highestKeepDays);
  options.archive = table.isOn("archive");
  for (const std::string_view key : {"keep_days", "archive"}) refuseWithoutDiary(table, key);
  options.keepWaiting = table.isOn("keep_waiting");
  options.prompt = table.isOn("prompt");
  options.midnight = table.isOn("midnight");
  options.eventLog = table.isOn("event_log");
  options.metrics = table.optionalText("metrics");
  options.role = roleFrom(table);
  return options;
}

DevicesFile devicesFrom(const DeskTable& root) {
  root.refuseUnknownKeys({"include", "printer", "serial", "bridge"});
  DevicesFile devices;
  for (const DeskTable& table : root.tables("printer", "name")) devices.printers.push_back(printerFrom(table));
  for (const DeskTable& table : root.tables("serial", "port"))
    devices.serialLines.push_back(serialFrom(table, devices.serialLines));
  devices.options = optionsFrom(root.table("bridge"));
  devices.options.waitForPaper =
      std::any_of(devices.printers.begin(), devices.printers.end(),
                  [](const PrinterDefinition& definition) { return definition.printer.waitForPaper; });
  return devices;
}

std::filesystem::path pathOf(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

/// The text of the native file, UTF-8. A little more than the largest is read of a larger one.
std::optional<std::string> textOfFile(const std::string& file) {
  std::error_code ignored;
  // A pipe would be waited for.
  const auto type = std::filesystem::status(pathOf(file), ignored).type();
  if (type == std::filesystem::file_type::directory || type == std::filesystem::file_type::fifo) return std::nullopt;
  std::ifstream stream(pathOf(file), std::ios::binary);
  if (!stream) return std::nullopt;
  std::string text(largestDevicesFile + 1, '\0');
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  if (stream.bad()) return std::nullopt;
  text.resize(static_cast<std::size_t>(stream.gcount()));
  return text;
}

/// `path` as it is where it is absolute, else in the folder of `file`.
std::string besideFile(const std::string& path, const std::string& file) {
  const std::u8string joined = (pathOf(file).parent_path() / pathOf(path)).u8string();
  return {joined.begin(), joined.end()};
}

/// The tables of the file that `own` includes; none where it includes none.
toml::table includedTables(const toml::table& own, const std::string& file, const DevicesTextReader& read) {
  const DeskTable desk(&own, nullptr);
  const toml::node* include = desk.get("include");
  if (include == nullptr) return {};
  const std::string included = besideFile(desk.requiredText("include"), file);
  const auto text = read(included);
  if (!text) throw DevicesMistake{placeOf(include->source()), included + ": il file non si può leggere"};
  toml::table tables = tablesOf(*text, included);
  if (const toml::node* further = tables.get("include"))
    throw DevicesMistake{placeOf(further->source()), "un file incluso non può includerne un altro"};
  return tables;
}

}  // namespace

std::variant<DevicesFile, DevicesFileError> parseDevicesFile(std::string_view text, const std::string& file,
                                                             const DevicesTextReader& read) {
  try {
    const toml::table own = tablesOf(text, file);
    const toml::table common = includedTables(own, file, read);
    return devicesFrom(DeskTable(&own, &common));
  } catch (const DevicesMistake& mistake) {
    return devicesFileError(mistake.place, mistake.reason);
  }
}

std::variant<DevicesFile, DevicesFileError> parseDevicesFile(std::string_view text, const std::string& file) {
  return parseDevicesFile(text, file, textOfFile);
}

std::variant<DevicesFile, DevicesFileError> readDevicesFile(const std::string& file) {
  const auto text = textOfFile(file);
  if (!text) return DevicesFileError{file + ": il file non si può leggere"};
  return parseDevicesFile(*text, file);
}

std::optional<std::string> devicesFileOf(const std::optional<std::string>& named, const std::string& mainFolder) {
  if (named) return named;
  std::string standard = underMainFolder("devices.toml", mainFolder);
  std::error_code ignored;
  if (!std::filesystem::exists(pathOf(standard), ignored)) return std::nullopt;
  return standard;
}

DevicesFileError devicesFileError(const TextPlace& place, std::string_view reason) {
  return {place.file + ", riga " + std::to_string(place.line) + ", colonna " + std::to_string(place.column) + ": " +
          std::string(reason)};
}

DevicesFile printingInto(DevicesFile devices, const std::vector<InstalledPrinter>& printers,
                         const std::string& folder) {
  devices.printers.clear();
  for (const InstalledPrinter& printer : printers)
    devices.printers.push_back({.printer = printer, .target = FolderTarget{folder}, .place = {}});
  return devices;
}

std::string underMainFolder(const std::string& path, const std::string& mainFolder) {
  const std::u8string joined = (pathOf(mainFolder) / pathOf(path)).u8string();
  return {joined.begin(), joined.end()};
}

}  // namespace tellaxis::platform
