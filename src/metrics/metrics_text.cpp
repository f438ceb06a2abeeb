// Metrics text: lines, and values that are written without the region's signs.
#include "metrics/metrics_text.h"

#include <utility>

namespace tellaxis {

namespace {

constexpr std::int64_t microsecondsOfASecond = 1'000'000;
constexpr std::size_t usualSize = 8 * 1024;

void appendEscaped(std::string& text, std::string_view value) {
  for (const char c : value) {
    if (c == '\\' || c == '"') text += '\\';
    if (c == '\n')
      text += "\\n";
    else
      text += c;
  }
}

/// As few digits behind the point as say it.
std::string secondsText(std::chrono::microseconds value) {
  const std::int64_t count = value.count() < 0 ? -value.count() : value.count();
  std::string fraction = std::to_string(microsecondsOfASecond + count % microsecondsOfASecond);
  fraction.front() = '.';
  fraction.erase(fraction.find_last_not_of('0') + 1);
  if (fraction == ".") fraction.clear();
  return (value.count() < 0 ? "-" : "") + std::to_string(count / microsecondsOfASecond) + fraction;
}

}  // namespace

void MetricsText::family(std::string_view name, std::string_view type, std::string_view help) {
  name_ = name;
  type_ = type;
  help_ = help;
  isOpen_ = false;
}

void MetricsText::begin(std::string_view suffix, Labels labels) {
  if (text_.empty()) text_.reserve(usualSize);
  if (!std::exchange(isOpen_, true)) {
    text_.append("# HELP ").append(name_).append(" ").append(help_).append("\n");
    text_.append("# TYPE ").append(name_).append(" ").append(type_).append("\n");
  }
  text_.append(name_).append(suffix);
  char before = '{';
  for (const Label& label : labels) {
    text_ += std::exchange(before, ',');
    text_.append(label.name).append("=\"");
    appendEscaped(text_, label.value);
    text_ += '"';
  }
  text_ += labels.size() == 0 ? " " : "} ";
}

void MetricsText::sample(std::string_view suffix, Labels labels, std::uint64_t value) {
  begin(suffix, labels);
  text_.append(std::to_string(value)).append("\n");
}

void MetricsText::sample(std::string_view suffix, Labels labels, std::chrono::microseconds value) {
  begin(suffix, labels);
  text_.append(secondsText(value)).append("\n");
}

std::string MetricsText::end() {
  text_.append("# EOF\n");
  return std::exchange(text_, {});
}

}  // namespace tellaxis
