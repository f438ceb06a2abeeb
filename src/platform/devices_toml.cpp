// TOML of the devices file: parsing within limits, tables over one another, and values of the kind that their key asks
// for.
#include "platform/devices_toml.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tellaxis::platform {

namespace {

/// Each of them may be a table within a table.
constexpr std::ptrdiff_t mostDotsOfLine = 200;
constexpr std::size_t longestShown = 60;

/// What no real devices file has, and what reading it could not be relied on to survive.
void refuseExcess(std::string_view text, const std::string& file) {
  TextPlace place{.file = file};
  if (text.size() > largestDevicesFile) throw DevicesMistake{place, "il file è troppo grande: al massimo 256 KB"};
  for (std::size_t from = 0; from < text.size(); ++place.line) {
    const std::string_view line = text.substr(from, text.find('\n', from) - from);
    if (std::count(line.begin(), line.end(), '.') > mostDotsOfLine)
      throw DevicesMistake{place, "troppi punti nella riga"};
    from += line.size() + 1;
  }
}

std::string quoted(std::string_view key) { return "\"" + std::string(key) + "\""; }

std::string textOf(const toml::node& node, std::string_view key) {
  const auto* text = node.as_string();
  if (text == nullptr)
    throw DevicesMistake{placeOf(node.source()), quoted(key) + " deve essere un testo fra virgolette"};
  const bool hasControl = std::any_of(text->get().begin(), text->get().end(), [](char c) { return c >= 0 && c < ' '; });
  if (text->get().empty() || hasControl)
    throw DevicesMistake{placeOf(node.source()), quoted(key) + " non ha un valore utilizzabile"};
  return text->get();
}

/// The tables that `root`, which may be null, has as `[[name]]`.
std::vector<const toml::table*> ownTables(const toml::table* root, std::string_view name) {
  const auto tableOf = [&name](const toml::node& node, const toml::table* table) {
    if (table == nullptr)
      throw DevicesMistake{placeOf(node.source()), "si scrive [[" + std::string(name) + "]], con due parentesi"};
    return table;
  };
  std::vector<const toml::table*> tables;
  const toml::node* node = root == nullptr ? nullptr : root->get(name);
  if (node == nullptr) return tables;
  if (!node->is_array()) tableOf(*node, nullptr);
  for (const toml::node& entry : *node->as_array()) tables.push_back(tableOf(entry, entry.as_table()));
  return tables;
}

/// The table that `root`, which may be null, has as `[name]`; null where it has none.
const toml::table* ownTable(const toml::table* root, std::string_view name) {
  const toml::node* node = root == nullptr ? nullptr : root->get(name);
  if (node == nullptr) return nullptr;
  if (!node->is_table())
    throw DevicesMistake{placeOf(node->source()), "si scrive [" + std::string(name) + "], con una parentesi sola"};
  return node->as_table();
}

/// Whether both tables have `key`, with the same text or number.
bool agree(const toml::table& one, const toml::table& other, std::string_view key) {
  const toml::node* a = one.get(key);
  const toml::node* b = other.get(key);
  if (a == nullptr || b == nullptr) return false;
  if (a->is_string() && b->is_string()) return a->as_string()->get() == b->as_string()->get();
  return a->is_integer() && b->is_integer() && a->as_integer()->get() == b->as_integer()->get();
}

}  // namespace

toml::table tablesOf(std::string_view text, const std::string& file) {
  refuseExcess(text, file);
  toml::parse_result parsed = toml::parse(text, file);
  if (parsed) return std::move(parsed).table();
  const toml::source_position where = parsed.error().source().begin;
  throw DevicesMistake{{file, where.line, where.column}, "sintassi TOML non valida"};
}

TextPlace placeOf(const toml::source_region& source) {
  return {source.path ? *source.path : std::string(), source.begin.line, source.begin.column};
}

std::string shown(std::string_view text) {
  std::size_t end = std::min(text.size(), longestShown);
  while (end < text.size() && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  std::string words(text.substr(0, end));
  std::replace_if(
      words.begin(), words.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
  return "\"" + words + (end < text.size() ? "...\"" : "\"");
}

const toml::node* DeskTable::get(std::string_view key) const {
  const toml::node* node = own_ == nullptr ? nullptr : own_->get(key);
  return node != nullptr || common_ == nullptr ? node : common_->get(key);
}

const toml::node& DeskTable::required(std::string_view key) const {
  const toml::node* node = get(key);
  const toml::table* table = own_ != nullptr ? own_ : common_;
  if (node == nullptr) throw DevicesMistake{placeOf(table->source()), "manca la chiave " + quoted(key)};
  return *node;
}

void DeskTable::refuseUnknownKeys(std::initializer_list<std::string_view> known) const {
  for (const toml::table* table : {own_, common_}) {
    if (table == nullptr) continue;
    for (const auto& [key, value] : *table)
      if (std::find(known.begin(), known.end(), key.str()) == known.end())
        throw DevicesMistake{placeOf(key.source()), key.str() == "include"
                                                        ? "\"include\" si scrive in cima al file, prima delle tabelle"
                                                        : "chiave sconosciuta " + shown(key.str())};
  }
}

std::string DeskTable::requiredText(std::string_view key) const { return textOf(required(key), key); }

std::string DeskTable::optionalText(std::string_view key) const {
  const toml::node* node = get(key);
  return node == nullptr ? std::string() : textOf(*node, key);
}

bool DeskTable::isOn(std::string_view key) const {
  const toml::node* node = get(key);
  if (node == nullptr) return false;
  const auto* boolean = node->as_boolean();
  if (boolean == nullptr) throw DevicesMistake{placeOf(node->source()), quoted(key) + " deve essere true o false"};
  return boolean->get();
}

DeskTable DeskTable::table(std::string_view name) const { return {ownTable(own_, name), ownTable(common_, name)}; }

std::vector<DeskTable> DeskTable::tables(std::string_view name, std::string_view identity) const {
  const std::vector<const toml::table*> desks = ownTables(own_, name);
  const std::vector<const toml::table*> commons = ownTables(common_, name);
  const auto counterpart = [&identity](const toml::table& table, const std::vector<const toml::table*>& others) {
    const auto found = std::find_if(others.begin(), others.end(),
                                    [&](const toml::table* other) { return agree(table, *other, identity); });
    return found == others.end() ? nullptr : *found;
  };
  std::vector<DeskTable> tables;
  tables.reserve(desks.size() + commons.size());
  for (const toml::table* table : desks) tables.emplace_back(table, counterpart(*table, commons));
  for (const toml::table* table : commons)
    if (counterpart(*table, desks) == nullptr) tables.emplace_back(nullptr, table);
  return tables;
}

int numberOf(const toml::node& node, std::string_view key, int highest) {
  const auto* number = node.as_integer();
  if (number == nullptr || number->get() < 1 || number->get() > highest)
    throw DevicesMistake{placeOf(node.source()),
                         quoted(key) + " deve essere un numero da 1 a " + std::to_string(highest)};
  return static_cast<int>(number->get());
}

}  // namespace tellaxis::platform
