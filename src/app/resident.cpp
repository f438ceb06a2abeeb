// Resident: start-up and the polling loop.
#include "app/resident.h"

#include <algorithm>
#include <chrono>

#include "core/polling.h"
#include "core/startup.h"
#include "platform/printers.h"

namespace tellaxis {

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
  while (!stop.waitFor(untilDue())) {
    // A tick that a job brought forward is followed by a whole interval.
    const auto begun = std::min(due, steady_clock::now());
    tick(polling, metrics);
    due = std::max(begun + std::chrono::milliseconds(interval), steady_clock::now());
  }
  bridge.host.Printer.endOpenDocuments();
  if (metrics != nullptr) metrics->end();
}

}  // namespace tellaxis
