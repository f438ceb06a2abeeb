// Job metrics: composition.
#include "app/job_metrics.h"

#include <utility>

#include "core/option_path.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace tellaxis {

std::unique_ptr<JobMetrics> JobMetrics::open(Bridge& bridge, const std::string& mainFolder, Devices& noted,
                                             Activity& activity) {
  if (bridge.options.metrics.empty()) return nullptr;
  return std::unique_ptr<JobMetrics>(new JobMetrics(bridge, mainFolder, noted, activity));
}

JobMetrics::JobMetrics(Bridge& bridge, const std::string& mainFolder, Devices& noted, Activity& activity)
    : bridge_(bridge),
      activity_(activity),
      devices_(noted, activity, bridge, figures_),
      file_(bridge, figures_, optionPath(bridge.options.metrics, mainFolder), TELLAXIS_VERSION) {
  activity.alsoTell(&figures_.failedSteps);
  if (bridge.options.diary.empty()) atStart_ = jobsAtStart(bridge.host.files, mainFolder);
}

void JobMetrics::started(const JobDiary* diary) {
  if (diary != nullptr)
    for (const auto& [device, outcome] : diary->foundAtStart()) figures_.count(device, outcome);
  for (const JobAtStart& job : std::exchange(atStart_, {}))
    if (!bridge_.host.files.exists(job.path)) figures_.count(job.device, Outcome::discarded);
}

void JobMetrics::tick(Polling& polling) {
  const auto begun = bridge_.host.clock.steady();
  polling.Timer1_Timer();
  file_.tickEnded(bridge_.host.clock.steady() - begun);
}

void tick(Polling& polling, JobMetrics* metrics) {
  if (metrics != nullptr)
    metrics->tick(polling);
  else
    polling.Timer1_Timer();
}

}  // namespace tellaxis
