// Profiles: settings files in memory.
#pragma once

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "fake/journal.h"
#include "fake/names.h"
#include "platform/profiles.h"

namespace tellaxis::fake {

class Profiles : public platform::Profiles {
 public:
  explicit Profiles(Journal& journal) : journal_(journal) {}

  // What the tests put there and look at; none of it is a call.
  void put(std::string_view file, std::string_view section, std::string_view key, std::string_view value) {
    Keys& keys = sectionOf(file, section);
    const auto entry = find(keys, key);
    if (entry == keys.end())
      keys.push_back({std::string(key), std::string(value)});
    else
      entry->value = value;
  }
  std::optional<std::string> value(std::string_view file, std::string_view section, std::string_view key) const {
    const auto sections = files_.find(lower(file));
    if (sections == files_.end()) return std::nullopt;
    const auto found = find(sections->second, section);
    if (found == sections->second.end()) return std::nullopt;
    const auto entry = find(found->keys, key);
    return entry == found->keys.end() ? std::nullopt : std::optional(entry->value);
  }
  /// No file can be made in this folder.
  void withoutFolder(std::string_view folder) { missingFolders_.insert(lower(folder)); }

  std::string read(std::optional<std::string_view> section, std::optional<std::string_view> key,
                   std::string_view fallback, std::size_t size, std::string_view file) override {
    const std::string sectionName(section.value_or("*"));
    const std::string keyName(key.value_or("*"));
    std::string result(fallback);
    if (journal_.record("read [" + sectionName + "] " + keyName + " of " + std::string(file))) {
      if (!section)
        result = namesOf(files_[lower(file)]);
      else if (!key)
        result = namesOf(sectionOf(file, *section));
      else if (const auto stored = value(file, *section, *key))
        result = trimmed(*stored);
    }
    return result.substr(0, size - 1);
  }

  bool write(std::optional<std::string_view> section, std::optional<std::string_view> key,
             std::optional<std::string_view> value, std::string_view file) override {
    const std::string sectionName(section.value_or("*"));
    const std::string assignment =
        key ? std::string(*key) + "=" + std::string(value.value_or("(deleted)")) : std::string("(deleted)");
    if (!journal_.record("write [" + sectionName + "] " + assignment + " to " + std::string(file)) || !section)
      return false;
    if (missingFolders_.contains(lower(file.substr(0, file.rfind('\\'))))) return false;
    if (key && value) {
      put(file, *section, *key, *value);
      return true;
    }
    Keys& keys = sectionOf(file, *section);
    std::erase_if(keys, [&](const Entry& entry) { return !key || lower(entry.name) == lower(*key); });
    return true;
  }

 private:
  struct Entry {
    std::string name;
    std::string value;
  };
  using Keys = std::vector<Entry>;
  struct Section {
    std::string name;
    Keys keys;
  };

  /// The row of a table that bears this name.
  template <class Table>
  static auto find(Table& table, std::string_view name) -> decltype(table.begin()) {
    return std::ranges::find_if(table, [&](const auto& row) { return lower(row.name) == lower(name); });
  }

  Keys& sectionOf(std::string_view file, std::string_view name) {
    std::vector<Section>& sections = files_[lower(file)];
    const auto found = find(sections, name);
    return found != sections.end() ? found->keys : sections.emplace_back(Section{std::string(name), {}}).keys;
  }

  template <class Table>
  static std::string namesOf(const Table& table) {
    std::string names;
    for (const auto& row : table) names += row.name + '\0';
    return names;
  }

  /// A stored value as it is read: without blanks and one pair of quotes around it.
  static std::string trimmed(std::string_view value) {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = value.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    value = value.substr(first, value.find_last_not_of(blanks) - first + 1);
    const char quote = value.front();
    if (value.size() > 1 && (quote == '"' || quote == '\'') && value.back() == quote)
      value = value.substr(1, value.size() - 2);
    return std::string(value);
  }

  Journal& journal_;
  std::map<std::string, std::vector<Section>> files_;
  std::set<std::string> missingFolders_;
};

}  // namespace tellaxis::fake
