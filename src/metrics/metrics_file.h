// Metrics file: the bridge's figures as a file, written anew every few seconds.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "core/bridge.h"
#include "metrics/figures.h"
#include "metrics/metrics_text.h"

namespace tellaxis {

/// Nothing that fails here concerns the jobs: it is traced and that is all.
class MetricsFile {
 public:
  /// `path` is one of the rules'; `version` is the program's.
  MetricsFile(Bridge& bridge, Figures& figures, std::string path, std::string version);

  /// A tick ended that took so long. The file is written where it is due: after the first tick, and from then on
  /// whenever 15 seconds have passed, a minute after a failure. Without a tick nothing is written.
  void tickEnded(std::chrono::microseconds duration);

  /// Replaces the file as a whole. What waits, which gates are open and what the printers last said is looked at now.
  void write();

 private:
  std::string text();
  void devices(MetricsText& text);
  void jobs(MetricsText& text);
  void durations(MetricsText& text);
  void program(MetricsText& text);

  Bridge& bridge_;
  Figures& figures_;
  std::string path_;
  std::string version_;
  std::chrono::milliseconds started_;
  std::chrono::microseconds due_;
};

}  // namespace tellaxis
