// Signs of life: a bridge that runs as a service and goes on, waits for a driver included, lets its manager know.
#pragma once

#include <memory>
#include <string>

#include "core/activity.h"
#include "core/bridge.h"
#include "platform/clock.h"
#include "platform/job_notices.h"
#include "platform/service_manager.h"
#include "platform/trace.h"

namespace tellaxis {

/// A clock whose waits are signs of life: whoever waits looks at the clock again and again.
class LivingClock : public platform::Clock {
 public:
  LivingClock(platform::Clock& clock, platform::ServiceManager& manager) : clock_(clock), manager_(manager) {}

  double secondsSinceMidnight() override { return clock_.secondsSinceMidnight(); }
  platform::DateTime now() override { return clock_.now(); }
  std::chrono::milliseconds sinceEpoch() override { return clock_.sinceEpoch(); }
  std::chrono::microseconds steady() override { return clock_.steady(); }
  void sleep(std::chrono::milliseconds duration) override {
    clock_.sleep(duration);
    manager_.alive();
  }

 private:
  platform::Clock& clock_;
  platform::ServiceManager& manager_;
};

/// Notices whose long waits are waited piece by piece.
class LivingNotices : public platform::JobNotices {
 public:
  LivingNotices(std::unique_ptr<platform::JobNotices> notices, platform::ServiceManager& manager)
      : notices_(std::move(notices)), manager_(manager) {}

  void watch(const std::vector<std::string>& paths) override { notices_->watch(paths); }
  bool isWhole(std::string_view path) override { return notices_->isWhole(path); }
  void waitFor(std::chrono::milliseconds duration) override;

 private:
  std::unique_ptr<platform::JobNotices> notices_;
  platform::ServiceManager& manager_;
};

/// "3 dispositivi attivi, ultimo scontrino 12:31": how many devices the settings switch on, and when the fiscal
/// printer's last job of this run ended.
std::string statusLine(const Settings& settings, const Activity& activity);

/// What a bridge tells its manager. Every call but `ready` may come often.
class ServiceReport {
 public:
  ServiceReport(platform::ServiceManager& manager, const Bridge& bridge, const Activity& activity)
      : manager_(manager), bridge_(bridge), activity_(activity) {}

  void ready();

  /// The bridge goes on; `stopAsked`: to its end.
  void goesOn(bool stopAsked);

 private:
  platform::ServiceManager& manager_;
  const Bridge& bridge_;
  const Activity& activity_;
  std::string told_;  ///< the last status line; empty before the bridge is ready
  bool stopping_ = false;
};

}  // namespace tellaxis
