// Paper: questions, and the second between two of them.
#include "core/paper.h"

#include "platform/clock.h"

namespace tellaxis {

namespace {

constexpr double secondsBetweenQuestions = 1;

}  // namespace

std::unique_ptr<Paper> Paper::open(Bridge& bridge, JobPrinters& printers) {
  const platform::BridgeOptions& options = bridge.options;
  if (options.diary.empty() && !options.waitForPaper) return nullptr;
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
  if (!asked.printer || (bridge_.options.diary.empty() && !asked.printer->waitForPaper)) return true;
  asked.before = bridge_.host.Printer.state(asked.printer->DeviceName);
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
  return bridge_.host.Printer.state(asked.printer->DeviceName);
}

/// Past midnight, or set back, the clock ends the pause.
bool Paper::hasJustRefused(const Asked& asked) const {
  if (!asked.refusedAt) return false;
  const double since = bridge_.host.clock.secondsSinceMidnight() - *asked.refusedAt;
  return since >= 0 && since < secondsBetweenQuestions;
}

bool mayBegin(const Bridge& bridge, Device device) { return bridge.paper == nullptr || bridge.paper->mayBegin(device); }

}  // namespace tellaxis
