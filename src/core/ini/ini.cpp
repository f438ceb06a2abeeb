// Ini: typed and raw access to the settings files.
#include "core/ini/ini.h"

#include "platform/locale.h"
#include "platform/profiles.h"
#include "text/trimmed.h"

namespace tellaxis {

namespace {

/// Bytes handed to the platform as the size of the read buffer; one of them is the ending NUL.
constexpr std::size_t readSize = 255;

struct TruthWord {
  std::string_view text;
  std::int16_t value;
};

constexpr TruthWord truthWords[] = {
    {"Vero", yes}, {"Falso", no}, {"True", yes}, {"False", no}, {"0", no}, {"-1", yes},
};

bool beginsWithZero(std::string_view text) { return text.starts_with('0'); }

}  // namespace

std::string_view TagliaNul(std::string_view text) { return text.substr(0, text.find('\0')); }

std::string LeggiIni(platform::Host& host, std::string_view section, std::string_view key, const Value& defaultValue,
                     std::string_view file) {
  return std::string(
      TagliaNul(host.profiles.read(section, key, textOf(defaultValue, host.locale.regional()), readSize, file)));
}

bool ScriviIni(platform::Host& host, std::string_view section, std::string_view key, std::string_view value,
               std::string_view file) {
  if (key.empty()) return host.profiles.write(section, std::nullopt, value, file);
  return host.profiles.write(section, key, value, file);
}

Value LeggiValore(platform::Host& host, std::string_view key, std::string_view file) {
  const std::string raw = LeggiIni(host, typedSection, key, Null{}, file);
  if (!beginsWithZero(raw) && IsNumero(raw))
    if (const auto number = host.locale.currency(raw)) return Currency{*number};
  for (const TruthWord& word : truthWords)
    if (raw == word.text) return word.value;
  return raw;
}

Value LeggiImpostazione(platform::Host& host, std::string_view key, const Value& defaultValue, std::string_view file) {
  Value value = LeggiValore(host, key, file);
  return IsVuoto(value) ? defaultValue : value;
}

void ScriviImpostazione(platform::Host& host, std::string_view key, const Value& value, std::string_view file) {
  if (IsVuoto(value)) return;
  ScriviIni(host, typedSection, key, textOf(value, host.locale.regional()), file);
}

bool IsVuoto(const Value& value) {
  if (std::holds_alternative<Null>(value)) return true;
  const auto* text = std::get_if<std::string>(&value);
  return text != nullptr && trimmed(*text).empty();
}

bool IsNumero(std::optional<std::string_view> text) {
  const std::string_view digits = text.value_or("x");
  return !beginsWithZero(digits) && digits.find_first_not_of(".,0123456789") == std::string_view::npos;
}

}  // namespace tellaxis
