// Regional: tables of separators, words and weekdays, and the reading of currency numbers.
#include "text/regional.h"

#include <array>
#include <limits>

namespace tellaxis {

namespace {

struct Region {
  std::string_view name;
  char decimalSeparator;
  char groupSeparator;
  std::string_view trueWord;
  std::string_view falseWord;
  std::array<std::string_view, 7> weekdays;
};

/// Words in code page 1252.
constexpr Region regions[] = {
    {.name = "it_IT",
     .decimalSeparator = ',',
     .groupSeparator = '.',
     .trueWord = "Vero",
     .falseWord = "Falso",
     .weekdays = {"domenica", "luned\xEC", "marted\xEC", "mercoled\xEC", "gioved\xEC", "venerd\xEC", "sabato"}},
    {.name = "en_US",
     .decimalSeparator = '.',
     .groupSeparator = ',',
     .trueWord = "True",
     .falseWord = "False",
     .weekdays = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"}},
    {.name = "de_DE",
     .decimalSeparator = ',',
     .groupSeparator = '.',
     .trueWord = "Wahr",
     .falseWord = "Falsch",
     .weekdays = {"Sonntag", "Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag", "Samstag"}},
    {.name = "fr_FR",
     .decimalSeparator = ',',
     .groupSeparator = '\xA0',
     .trueWord = "Vrai",
     .falseWord = "Faux",
     .weekdays = {"dimanche", "lundi", "mardi", "mercredi", "jeudi", "vendredi", "samedi"}},
    {.name = "es_ES",
     .decimalSeparator = ',',
     .groupSeparator = '.',
     .trueWord = "Verdadero",
     .falseWord = "Falso",
     .weekdays = {"domingo", "lunes", "martes", "mi\xE9rcoles", "jueves", "viernes",
                  "s\xE1"
                  "bado"}},
};

RegionalSettings settingsOf(const Region& region) {
  RegionalSettings settings{.decimalSeparator = region.decimalSeparator,
                            .groupSeparator = region.groupSeparator,
                            .trueWord = std::string(region.trueWord),
                            .falseWord = std::string(region.falseWord),
                            .weekdays = {}};
  for (std::size_t day = 0; day < region.weekdays.size(); ++day)
    settings.weekdays.at(day) = std::string(region.weekdays.at(day));
  return settings;
}

constexpr int decimals = 4;

/// A number without its sign, growing digit by digit.
class Magnitude {
 public:
  void addDigit(char digit) {
    const auto value = static_cast<std::uint64_t>(digit - '0');
    if (number_ > (std::numeric_limits<std::uint64_t>::max() - value) / 10) tooLarge_ = true;
    number_ = number_ * 10 + value;
    ++digits_;
  }
  void addDecimal(char digit) {
    ++decimals_;
    if (decimals_ <= decimals) {
      addDigit(digit);
    } else {
      ++digits_;
      if (decimals_ == decimals + 1)
        next_ = digit;
      else
        restIsNotZero_ = restIsNotZero_ || digit != '0';
    }
  }
  bool hasDigits() const { return digits_ > 0; }

  std::optional<std::int64_t> rounded(bool negative) const {
    Magnitude full = *this;
    for (int i = decimals_; i < decimals; ++i) full.addDigit('0');
    const bool half = next_ == '5' && !restIsNotZero_;
    const bool up = half ? full.number_ % 2 != 0 : next_ >= '5';
    const auto limit = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + (negative ? 1 : 0);
    if (full.tooLarge_ || full.number_ > limit || (up && full.number_ == limit)) return std::nullopt;
    full.number_ += up ? 1 : 0;
    return static_cast<std::int64_t>(negative ? 0 - full.number_ : full.number_);
  }

 private:
  std::uint64_t number_ = 0;
  int digits_ = 0;
  int decimals_ = 0;
  char next_ = '0';  ///< the first decimal that has no place
  bool restIsNotZero_ = false;
  bool tooLarge_ = false;
};

}  // namespace

std::optional<RegionalSettings> regionalSettings(std::string_view name) {
  for (const Region& region : regions)
    if (region.name == name) return settingsOf(region);
  return std::nullopt;
}

std::optional<RegionalSettings> regionalSettingsOfLanguage(std::string_view name) {
  const std::string_view language = name.substr(0, name.find_first_of("_.@"));
  for (const Region& region : regions)
    if (region.name.substr(0, 2) == language) return settingsOf(region);
  return std::nullopt;
}

RegionalSettings italianSettings() { return settingsOf(regions[0]); }

std::optional<std::int64_t> currencyFromText(std::string_view text, const RegionalSettings& regional) {
  constexpr std::string_view blanks = " \t";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return std::nullopt;
  text = text.substr(first, text.find_last_not_of(blanks) - first + 1);
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.remove_prefix(1);

  Magnitude magnitude;
  bool inDecimals = false;
  for (const char c : text) {
    if (c >= '0' && c <= '9')
      inDecimals ? magnitude.addDecimal(c) : magnitude.addDigit(c);
    else if (c == regional.decimalSeparator && !inDecimals)
      inDecimals = true;
    else if (c != regional.groupSeparator || inDecimals)
      return std::nullopt;
  }
  if (!magnitude.hasDigits()) return std::nullopt;
  return magnitude.rounded(negative);
}

}  // namespace tellaxis
