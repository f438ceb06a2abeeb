// Job metrics: the metrics of a resident program, put between polling and the devices.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/job_diary.h"
#include "core/activity.h"
#include "core/bridge.h"
#include "core/devices.h"
#include "core/jobs_at_start.h"
#include "core/polling.h"
#include "metrics/figures.h"
#include "metrics/measured_devices.h"
#include "metrics/metrics_file.h"

namespace tellaxis {

class JobMetrics {
 public:
  /// Null where the options of `bridge` ask for no metrics. Made before the start-up, which may empty the job folders.
  /// `noted` are the devices whose jobs `activity` hears of; from now on it tells of failing steps. `mainFolder` is in
  /// code page 1252.
  static std::unique_ptr<JobMetrics> open(Bridge& bridge, const std::string& mainFolder, Devices& noted,
                                          Activity& activity);
  ~JobMetrics() { activity_.alsoTell(nullptr); }
  JobMetrics(const JobMetrics&) = delete;
  JobMetrics& operator=(const JobMetrics&) = delete;

  /// The devices for the diary or polling to call.
  Devices& devices() { return devices_; }

  /// The start-up is done: counts what became of the jobs of an earlier run. Where there is a diary it knows more of
  /// them; it is told first.
  void started(const JobDiary* diary);

  void tick(Polling& polling);

  /// The program ends: writes the file for the last time.
  void end() { file_.write(); }

 private:
  JobMetrics(Bridge& bridge, const std::string& mainFolder, Devices& noted, Activity& activity);

  Bridge& bridge_;
  Activity& activity_;
  Figures figures_;
  MeasuredDevices devices_;
  MetricsFile file_;
  std::vector<JobAtStart> atStart_;
};

/// One tick, measured where there are metrics.
void tick(Polling& polling, JobMetrics* metrics);

}  // namespace tellaxis
