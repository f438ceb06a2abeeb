// Activity: noting jobs around the devices' own operations.
#include "core/activity.h"

#include <exception>
#include <utility>

#include "core/ini/values.h"
#include "core/paper.h"
#include "text/trimmed.h"

namespace tellaxis {

namespace {

std::string_view bareName(std::string_view path) { return path.substr(path.find_last_of("\\/:") + 1); }

}  // namespace

void Activity::begin(Device device, std::string_view jobFile) {
  running_ = device;
  job_ = LastJob{.name = std::string(bareName(jobFile))};
}

void Activity::end(platform::Clock& clock) {
  if (!job_) return;
  job_->ended = clock.now();
  job_->second = static_cast<int>(clock.secondsSinceMidnight()) % 60;
  lastJobs_[static_cast<std::size_t>(running_)] = std::exchange(job_, std::nullopt);
}

void Activity::printerSaysNo(Device device, std::string_view why) {
  auto& job = lastJobs_[static_cast<std::size_t>(device)];
  if (!job) return;
  job->failure = why;
  job->printerSaysNo = true;
}

void Activity::failed(std::string_view operation, std::string_view subject, std::string_view reason) {
  if (alsoTold_ != nullptr) alsoTold_->failed(operation, subject, reason);
  if (!job_ || !job_->failure.empty()) return;
  // A blank value, such as the font of a line that names none, is passed over on purpose.
  if (trimmed(subject).empty()) return;
  job_->failure = std::string(operation) + " " + std::string(subject) + ": " + std::string(reason);
}

/// What fails in asking is not the job's: that has ended.
void NotedDevices::end(Device device) {
  activity_.end(bridge_.host.clock);
  if (bridge_.paper == nullptr) return;
  const auto& words = platform::wordsOf(bridge_.paper->after(device));
  if (words.saysNo) activity_.printerSaysNo(device, words.italian);
}

template <typename Job>
void NotedDevices::note(Device device, std::string_view jobFile, Job job) {
  activity_.begin(device, jobFile);
  try {
    job();
  } catch (const std::exception& failure) {
    activity_.failed("stampa", jobFile, failure.what());
    end(device);
    throw;
  }
  end(device);
}

void NotedDevices::LanciaFileDisplay() {
  note(Device::display, bridge_.settings.Display_File, [&] { devices_.LanciaFileDisplay(); });
}

void NotedDevices::MF_Invia(std::string_view jobFile) {
  note(Device::fiscalPrinter, jobFile, [&] { devices_.MF_Invia(jobFile); });
}

void NotedDevices::LanciaFileRF() {
  note(Device::slipPrinter, bridge_.settings.RF_File, [&] { devices_.LanciaFileRF(); });
}

void NotedDevices::Cort_StampaFile(std::string_view jobFile) {
  note(Device::courtesyPrinter, jobFile, [&] { devices_.Cort_StampaFile(jobFile); });
}

}  // namespace tellaxis
