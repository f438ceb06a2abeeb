// Attesa: waiting on the clock of the day without burning a processor.
#include "core/attesa.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/locale.h"
#include "platform/trace.h"

namespace tellaxis {

namespace {

/// The longest sleep between two looks at the clock, so that a clock set anew is noticed; and the shortest.
constexpr double longestSleep = 50;
constexpr double shortestSleep = 1;

/// Hundredths of a second in a day.
constexpr double day = 8'640'000;

/// The window is served this often, in milliseconds.
constexpr double yieldingSleep = 10;

}  // namespace

void Attesa(Bridge& bridge, std::int16_t hundredths, bool noYield) {
  platform::Host& host = bridge.host;
  // No wait is none, though late in the day the clock reads less in single precision than it did in double.
  if (hundredths <= 0) return;
  const double start = host.clock.secondsSinceMidnight() * 100;
  const double end = start + hundredths;
  for (;;) {
    // Single precision, as the clock has always been read here: it can end a wait up to half a hundredth early late in
    // the day.
    double now = static_cast<float>(host.clock.secondsSinceMidnight() * 100);
    // A clock that was set back by an hour or two spans no midnight.
    if (bridge.options.midnight && now < start - day / 2) now += day;
    if (!(now < end)) return;
    if (!noYield) host.dialogs.processEvents();
    const double milliseconds = std::clamp((end - now) * 10, shortestSleep, noYield ? longestSleep : yieldingSleep);
    host.clock.sleep(std::chrono::milliseconds(static_cast<std::int64_t>(std::ceil(milliseconds))));
  }
}

void Attesa(Bridge& bridge, const Value& hundredths, bool noYield) {
  platform::Host& host = bridge.host;
  const auto& regional = host.locale.regional();
  if (const auto number = integerFrom(hundredths, regional))
    Attesa(bridge, *number, noYield);
  else
    host.trace.failed("Attesa", textOf(hundredths, regional), "non \xE8 un numero di centesimi");
}

void PausaCicli(std::int16_t count) {
  for (volatile int i = 1; i <= count;) i = i + 1;
}

}  // namespace tellaxis
