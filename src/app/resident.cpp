// Resident: start-up and the polling loop.
#include "app/resident.h"

#include <algorithm>
#include <chrono>

#include "core/polling.h"
#include "core/startup.h"
#include "platform/printers.h"

namespace tellaxis {

namespace {

constexpr std::chrono::milliseconds longestWait{30'000};

}  // namespace

void runResident(Bridge& bridge, Devices& devices, DeviceSetup& setup, const std::string& mainFolder, int interval,
                 platform::StopRequest& stop, const std::function<void()>& ready, JobMetrics* metrics) {
  using std::chrono::steady_clock;
  using namespace std::chrono_literals;

  Form_Load(bridge, setup, mainFolder);
  ready();

  Polling polling(bridge, devices);
  auto due = steady_clock::now() + std::chrono::milliseconds(interval);
  const auto untilDue = [&due] {
    return std::max(0ms, std::chrono::ceil<std::chrono::milliseconds>(due - steady_clock::now()));
  };
  // In pieces where the interval is long, so that whoever asked for signs of life gets them.
  const auto stopAskedUntilDue = [&] {
    for (;;) {
      const auto begun = steady_clock::now();
      const auto left = untilDue();
      const auto piece = std::min<std::chrono::milliseconds>(left, longestWait);
      if (stop.waitFor(piece)) return true;
      // A job that brings the tick forward ends the wait before the piece is over.
      if (piece == left || steady_clock::now() - begun < piece) return false;
      bridge.stopRequested();
    }
  };
  while (!stopAskedUntilDue()) {
    // A tick that a job brought forward is followed by a whole interval.
    const auto begun = std::min(due, steady_clock::now());
    tick(polling, metrics);
    due = std::max(begun + std::chrono::milliseconds(interval), steady_clock::now());
  }
  // Whoever wants to know that the program ends hears of it before the open documents are printed.
  bridge.stopRequested();
  bridge.host.Printer.endOpenDocuments();
  if (metrics != nullptr) metrics->end();
}

}  // namespace tellaxis
