// Measured devices: the devices, each job of which is counted and timed.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "core/activity.h"
#include "core/bridge.h"
#include "core/devices.h"
#include "metrics/figures.h"
#include "platform/files.h"

namespace tellaxis {

/// A slip or display file that stays after a failure comes again with every tick: while it fails it is one job.
class MeasuredDevices : public Devices {
 public:
  /// `devices` are those whose jobs `activity` hears of.
  MeasuredDevices(Devices& devices, const Activity& activity, Bridge& bridge, Figures& figures)
      : devices_(devices), activity_(activity), bridge_(bridge), figures_(figures) {}

  void LanciaFileDisplay() override;
  void MF_Invia(std::string_view jobFile) override;
  void LanciaFileRF() override;
  void Cort_StampaFile(std::string_view jobFile) override;

 private:
  using Identity = std::optional<platform::FileIdentity>;

  template <typename Job>
  void measure(Device device, std::string_view jobFile, Job job);
  void count(Device device, std::string_view jobFile, std::chrono::microseconds duration, bool triedAgain);
  bool isTriedAgain(Device device, std::string_view jobFile);
  Identity staysAt(Device device, std::string_view jobFile);

  Devices& devices_;
  const Activity& activity_;
  Bridge& bridge_;
  Figures& figures_;
  std::array<Identity, deviceCount> staying_;  ///< the file of a job that failed and is still there
};

}  // namespace tellaxis
