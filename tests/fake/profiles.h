// Profiles: settings files in memory.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "fake/journal.h"
#include "fake/names.h"
#include "platform/profiles.h"

namespace tellaxis::fake {

class Profiles : public platform::Profiles {
 public:
  explicit Profiles(Journal& journal) : journal_(journal) {}

  // What the tests put there and look at; none of it is a call.
  void put(std::string_view file, std::string_view section, std::string_view key, std::string_view value) {
    sections_[{lower(file), lower(section)}][lower(key)] = value;
  }
  std::optional<std::string> value(std::string_view file, std::string_view section, std::string_view key) const {
    const auto found = sections_.find({lower(file), lower(section)});
    if (found == sections_.end()) return std::nullopt;
    const auto entry = found->second.find(lower(key));
    if (entry == found->second.end()) return std::nullopt;
    return entry->second;
  }

  std::string read(std::optional<std::string_view> section, std::optional<std::string_view> key,
                   std::string_view fallback, std::size_t size, std::string_view file) override {
    const std::string sectionName(section.value_or("*"));
    const std::string keyName(key.value_or("*"));
    std::string result(fallback);
    if (journal_.record("read [" + sectionName + "] " + keyName + " of " + std::string(file)))
      if (const auto stored = value(file, sectionName, keyName)) result = *stored;
    return result.substr(0, size - 1);
  }

  bool write(std::optional<std::string_view> section, std::optional<std::string_view> key,
             std::optional<std::string_view> value, std::string_view file) override {
    const std::string sectionName(section.value_or("*"));
    const std::string assignment =
        key ? std::string(*key) + "=" + std::string(value.value_or("(deleted)")) : std::string("(deleted)");
    if (!journal_.record("write [" + sectionName + "] " + assignment + " to " + std::string(file)) || !section)
      return false;
    auto& keys = sections_[{lower(file), lower(sectionName)}];
    if (!key)
      keys.clear();
    else if (!value)
      keys.erase(lower(*key));
    else
      keys[lower(*key)] = *value;
    return true;
  }

 private:
  Journal& journal_;
  std::map<std::pair<std::string, std::string>, std::map<std::string, std::string>> sections_;
};

}  // namespace tellaxis::fake
