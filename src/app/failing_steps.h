// Failing steps: where they go besides standard error: on the record of the job under way, and into the system's log.
#pragma once

#include <memory>
#include <string_view>

#include "core/activity.h"
#include "platform/bridge_options.h"
#include "platform/event_log.h"
#include "platform/service_manager.h"
#include "platform/trace.h"

namespace tellaxis {

class FailingSteps : public platform::Trace {
 public:
  /// `traced`: the user wants to see every failing step. `manager`, who may be null, hears that the program goes on: a
  /// step that fails after its time is over is no hang.
  FailingSteps(Activity& activity, bool traced, platform::ServiceManager* manager);

  /// Whether they are still to be printed on standard error: not where the journal, to which that leads, has them
  /// already, with their fields.
  bool arePrinted() const { return traced_ && log_ == nullptr; }

  /// Whether they go into the system's log, which names the job under way.
  bool areLogged() const { return log_ != nullptr; }

  /// Opens the system's log where the options ask for it.
  void heed(const platform::BridgeOptions& options);

  void failed(std::string_view operation, std::string_view subject, std::string_view reason) override;

 private:
  Activity& activity_;
  bool traced_;
  platform::ServiceManager* manager_;
  std::unique_ptr<platform::EventLog> log_;
};

}  // namespace tellaxis
