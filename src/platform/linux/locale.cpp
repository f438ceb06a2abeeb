// Locale: tables first, then the C library.
#include "platform/linux/locale.h"

#include <langinfo.h>
#include <locale.h>
#include <clocale>
#include <cstdlib>

#include <memory>

#include "text/code_page.h"
#include "text/regional.h"

namespace tellaxis::platform {

namespace {

struct FreeLocale {
  void operator()(locale_t locale) const { ::freelocale(locale); }
};
using LocaleData = std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale>;

LocaleData openLocale(const std::string& name) {
  LocaleData data(::newlocale(LC_ALL_MASK, name.c_str(), nullptr));
  if (data != nullptr && std::string_view(::nl_langinfo_l(CODESET, data.get())) != "UTF-8") data.reset();
  return data;
}

std::string textOf(const LocaleData& data, nl_item item) {
  return codePageFromUtf8(::nl_langinfo_l(item, data.get())).value_or(std::string());
}

/// A sign is one byte here. Narrow blanks between groups have no place in code page 1252: a hard blank is used.
char groupSeparatorOf(const LocaleData& data) {
  constexpr char hardBlank = '\xA0';
  for (const nl_item item : {THOUSEP, __MON_THOUSANDS_SEP}) {
    const std::string_view sign = ::nl_langinfo_l(item, data.get());
    if (sign.empty()) continue;
    const auto text = codePageFromUtf8(sign);
    return text && text->size() == 1 ? text->front() : hardBlank;
  }
  return hardBlank;
}

std::optional<RegionalSettings> settingsOfData(const LocaleData& data, const std::string& name) {
  const std::string decimal = textOf(data, RADIXCHAR);
  if (decimal.size() != 1) return std::nullopt;
  const auto language = regionalSettingsOfLanguage(name);
  RegionalSettings settings = language ? *language : *regionalSettings("en_US");
  settings.decimalSeparator = decimal.front();
  settings.groupSeparator = groupSeparatorOf(data);
  constexpr nl_item days[] = {DAY_1, DAY_2, DAY_3, DAY_4, DAY_5, DAY_6, DAY_7};
  for (std::size_t day = 0; day < settings.weekdays.size(); ++day) {
    const std::string name1252 = textOf(data, days[day]);
    if (!name1252.empty()) settings.weekdays.at(day) = name1252;
  }
  return settings;
}

}  // namespace

std::optional<std::int64_t> LinuxLocale::currency(std::string_view text) const {
  return currencyFromText(text, regional_);
}

std::optional<RegionalSettings> settingsOfLocale(const std::string& name) {
  const std::string region = name.substr(0, name.find_first_of(".@"));
  if (region == "C" || region == "POSIX") return italianSettings();
  if (auto known = regionalSettings(region)) return known;
  if (!region.empty() && name.find('/') == std::string::npos)
    for (const std::string& candidate : {region + ".UTF-8", name})
      if (const LocaleData data = openLocale(candidate); data != nullptr)
        if (auto settings = settingsOfData(data, name)) return settings;
  return regionalSettingsOfLanguage(name);
}

RegionalSettings settingsOfEnvironment() {
  for (const char* variable : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
    const char* name = std::getenv(variable);
    if (name != nullptr && *name != '\0') return settingsOfLocale(name).value_or(italianSettings());
  }
  return italianSettings();
}

}  // namespace tellaxis::platform
