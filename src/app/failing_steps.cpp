// Failing steps: handing them on.
#include "app/failing_steps.h"

#include "core/device_names.h"

namespace tellaxis {

FailingSteps::FailingSteps(Activity& activity, bool traced, platform::ServiceManager* manager)
    : activity_(activity), traced_(traced), manager_(manager) {
  if (traced) log_ = platform::openErrorStreamLog();
}

void FailingSteps::heed(const platform::BridgeOptions& options) {
  if (options.eventLog && log_ == nullptr) log_ = platform::openEventLog();
}

void FailingSteps::failed(std::string_view operation, std::string_view subject, std::string_view reason) {
  activity_.failed(operation, subject, reason);
  if (manager_ != nullptr) manager_->alive();
  if (log_ == nullptr) return;
  const auto job = activity_.runningJob();
  log_->write({.operation = operation,
               .subject = subject,
               .reason = reason,
               .device = job ? namesOf(job->device).name : std::string_view(),
               .job = job ? job->name : std::string_view()});
}

}  // namespace tellaxis
