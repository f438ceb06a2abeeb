// Activity: the last job of each device and how it went, kept in memory for whoever looks at the window.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/bridge.h"
#include "core/devices.h"
#include "platform/clock.h"
#include "platform/trace.h"

namespace tellaxis {

enum class Device : std::uint8_t { display, fiscalPrinter, slipPrinter, courtesyPrinter };
inline constexpr std::size_t deviceCount = 4;

struct LastJob {
  std::string name;  ///< the job file's bare name
  platform::DateTime ended;
  int second = 0;
  std::string failure;         ///< the first step that failed, with its reason; empty when all went well
  bool printerSaysNo = false;  ///< `failure` is what the printer says of itself
};

/// Hears of every failing step and puts the first one of each job on its record; steps outside a job are not its
/// business.
class Activity : public platform::Trace {
 public:
  void begin(Device device, std::string_view jobFile);
  void end(platform::Clock& clock);

  /// After the end of its job, the device's printer says why nothing comes out of it; this counts before a step that
  /// failed in the job.
  void printerSaysNo(Device device, std::string_view why);

  void failed(std::string_view operation, std::string_view subject, std::string_view reason) override;

  /// Who else hears of every failing step from now on; null for nobody.
  void alsoTell(platform::Trace* other) { alsoTold_ = other; }

  struct RunningJob {
    Device device;
    std::string_view name;  ///< the job file's bare name
  };
  /// The job under way; nothing outside of one.
  std::optional<RunningJob> runningJob() const {
    return job_ ? std::optional(RunningJob{running_, job_->name}) : std::nullopt;
  }

  /// The device's last job; nothing before its first.
  const std::optional<LastJob>& lastJob(Device device) const { return lastJobs_[static_cast<std::size_t>(device)]; }

 private:
  std::array<std::optional<LastJob>, deviceCount> lastJobs_;
  Device running_ = Device::display;
  std::optional<LastJob> job_;
  platform::Trace* alsoTold_ = nullptr;
};

/// The devices, each job of which is noted.
class NotedDevices : public Devices {
 public:
  NotedDevices(Devices& devices, Activity& activity, Bridge& bridge)
      : devices_(devices), activity_(activity), bridge_(bridge) {}

  void LanciaFileDisplay() override;
  void MF_Invia(std::string_view jobFile) override;
  void LanciaFileRF() override;
  void Cort_StampaFile(std::string_view jobFile) override;

 private:
  void end(Device device);
  template <typename Job>
  void note(Device device, std::string_view jobFile, Job job);

  Devices& devices_;
  Activity& activity_;
  Bridge& bridge_;
};

}  // namespace tellaxis
