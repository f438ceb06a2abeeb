// Samsung markup: splitting a line and converting its fields.
#include "courtesy/samsung_markup.h"

#include <algorithm>
#include <cmath>

#include "core/ini/values.h"
#include "platform/locale.h"
#include "platform/trace.h"

namespace tellaxis {

namespace {

/// The pitch that stands for small print.
constexpr double smallPitch = 8;

/// The size that stands for small print on the 500 class, and what it is printed in.
constexpr double smallSize = 8;
constexpr std::string_view smallFont = "FontB17cpi";

constexpr double usualSize = 9;

struct Size {
  std::string_view field;
  double points;
};

constexpr Size sizes[] = {{"9", 9}, {"8", smallSize}, {"18", 18}};

std::optional<double> number(const platform::Host& host, std::string_view field) {
  return numberFromText(field, host.locale.regional());
}

}  // namespace

void readLine(platform::Host& host, const SamsungModel& model, std::string_view line, Markup& markup) {
  for (const FieldRule& rule : model.fields) {
    if (line.empty()) return;
    const std::string_view field = line.substr(0, line.find('#'));
    line.remove_prefix(std::min(field.size() + 1, line.size()));
    if (!rule.store(host, model, field.empty() ? rule.emptyGives : field, markup))
      host.trace.failed("lettura campo", field, "non \xE8 un numero");
  }
}

bool storeText(platform::Host&, const SamsungModel&, std::string_view field, Markup& markup) {
  markup.Testo = field;
  return true;
}

bool storeCommand(platform::Host& host, const SamsungModel&, std::string_view field, Markup& markup) {
  const auto command = number(host, field);
  if (command) markup.Comando = std::trunc(*command);
  return command.has_value();
}

bool storeSize(platform::Host&, const SamsungModel&, std::string_view field, Markup& markup) {
  markup.Dimensione = usualSize;
  for (const Size& size : sizes)
    if (size.field == field) markup.Dimensione = size.points;
  return true;
}

bool storePitch(platform::Host& host, const SamsungModel& model, std::string_view field, Markup& markup) {
  const auto pitch = number(host, field);
  if (pitch) markup.PassoPiccolo = *pitch == smallPitch ? model.pitch.small : model.pitch.usual;
  return pitch.has_value();
}

bool storeStyle(platform::Host& host, const SamsungModel& model, std::string_view field, Markup& markup) {
  const auto code = number(host, field);
  if (!code) return false;
  for (const Style& style : model.styles) {
    if (style.code && *style.code != std::trunc(*code)) continue;
    markup.Carattere = !style.fontOn350.empty() && is350Device(host.Printer) ? style.fontOn350 : style.font;
    markup.Dimensione = style.size;
    break;
  }
  return true;
}

bool storeStyleUnlessSmall(platform::Host& host, const SamsungModel& model, std::string_view field, Markup& markup) {
  if (markup.Dimensione != smallSize) return storeStyle(host, model, field, markup);
  markup.Carattere = smallFont;
  markup.Dimensione = usualSize;
  return true;
}

bool storeBold(platform::Host& host, const SamsungModel&, std::string_view field, Markup& markup) {
  const auto bold = integerFrom(std::string(field), host.locale.regional());
  if (bold) markup.Grassetto = *bold;
  return bold.has_value();
}

bool storeColour(platform::Host&, const SamsungModel&, std::string_view field, Markup& markup) {
  markup.Colore = field;
  return true;
}

}  // namespace tellaxis
