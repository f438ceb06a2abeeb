// Receipts: a fiscal driver that costs next to nothing, jobs for it, and the time that they take.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/bridge.h"
#include "core/devices.h"
#include "platform/files.h"

namespace tellaxis::bench {

inline constexpr int jobs = 100;
inline constexpr std::size_t jobSize = 2048;

/// A fiscal driver that only takes a copy of the job.
class CopyingDevices : public Devices {
 public:
  explicit CopyingDevices(Bridge& bridge) : bridge_(bridge) {}
  void LanciaFileDisplay() override {}
  void MF_Invia(std::string_view jobFile) override {
    bridge_.host.files.copy(jobFile, bridge_.settings.MF_File);
    bridge_.fiscalOutcome = FiscalOutcome::delivered;
  }
  void LanciaFileRF() override {}
  void Cort_StampaFile(std::string_view /*jobFile*/) override {}

 private:
  Bridge& bridge_;
};

inline void dropJobs(const std::filesystem::path& folder, int count = jobs) {
  const std::string text(jobSize, 'x');
  for (int i = 0; i < count; ++i) std::ofstream(folder / ("job" + std::to_string(1000 + i) + ".txt")) << text;
}

inline double microseconds(const std::function<void()>& work) {
  const auto begun = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begun).count();
}

inline double median(std::vector<double> times) {
  std::ranges::nth_element(times, times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2));
  return times[times.size() / 2];
}

}  // namespace tellaxis::bench
