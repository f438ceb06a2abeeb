// Paper: questions, and the second between two of them.
#include "core/paper.h"

#include "platform/clock.h"

namespace tellaxis {

namespace {

constexpr double secondsBetweenQuestions = 1;

/// Whether it is wanted to know what became of the jobs of every printer.
bool isAccountKept(const platform::BridgeOptions& options) {
  return !options.diary.empty() || !options.metrics.empty();
}

}  // namespace

std::unique_ptr<Paper> Paper::open(Bridge& bridge, JobPrinters& printers) {
  const platform::BridgeOptions& options = bridge.options;
  if (!isAccountKept(options) && !options.waitForPaper) return nullptr;
  return std::unique_ptr<Paper>(new Paper(bridge, printers));
}

bool Paper::mayBegin(Device device) {
  Asked& asked = asked_.at(static_cast<std::size_t>(device));
  const bool may = asksAndMayBegin(device, asked);
  if (!may) heldBack_.at(static_cast<std::size_t>(device)) = asked.before;
  return may;
}

bool Paper::asksAndMayBegin(Device device, Asked& asked) {
  if (hasJustRefused(asked)) return false;
  asked = {.printer = printers_.printerOf(device)};
  if (!asked.printer || (!isAccountKept(bridge_.options) && !asked.printer->waitForPaper)) return true;
  asked.before = ask(device, *asked.printer);
  if (!asked.printer->waitForPaper || !platform::wordsOf(asked.before).saysNo) return true;
  asked.refusedAt = bridge_.host.clock.secondsSinceMidnight();
  return false;
}

bool Paper::waits(Device device) const {
  const auto& printer = asked_.at(static_cast<std::size_t>(device)).printer;
  return printer && printer->waitForPaper;
}

platform::PrinterState Paper::after(Device device) {
  const Asked& asked = asked_.at(static_cast<std::size_t>(device));
  if (!asked.printer || asked.before == platform::PrinterState::unknown) return platform::PrinterState::unknown;
  return ask(device, *asked.printer);
}

platform::PrinterState Paper::ask(Device device, const platform::InstalledPrinter& printer) {
  const platform::PrinterState state = bridge_.host.Printer.state(printer.DeviceName);
  said_.at(static_cast<std::size_t>(device)) = state;
  return state;
}

/// Past midnight, or set back, the clock ends the pause.
bool Paper::hasJustRefused(const Asked& asked) const {
  if (!asked.refusedAt) return false;
  const double since = bridge_.host.clock.secondsSinceMidnight() - *asked.refusedAt;
  return since >= 0 && since < secondsBetweenQuestions;
}

bool mayBegin(const Bridge& bridge, Device device) { return bridge.paper == nullptr || bridge.paper->mayBegin(device); }

}  // namespace tellaxis
