// Measured devices: a look at the clock before each job, and what is counted after it.
#include "metrics/measured_devices.h"

#include <exception>

#include "platform/clock.h"

namespace tellaxis {

void MeasuredDevices::LanciaFileDisplay() {
  measure(Device::display, bridge_.settings.Display_File, [&] { devices_.LanciaFileDisplay(); });
}

void MeasuredDevices::MF_Invia(std::string_view jobFile) {
  measure(Device::fiscalPrinter, jobFile, [&] { devices_.MF_Invia(jobFile); });
}

void MeasuredDevices::LanciaFileRF() {
  measure(Device::slipPrinter, bridge_.settings.RF_File, [&] { devices_.LanciaFileRF(); });
}

void MeasuredDevices::Cort_StampaFile(std::string_view jobFile) {
  measure(Device::courtesyPrinter, jobFile, [&] { devices_.Cort_StampaFile(jobFile); });
}

template <typename Job>
void MeasuredDevices::measure(Device device, std::string_view jobFile, Job job) {
  const bool triedAgain = isTriedAgain(device, jobFile);
  const auto begun = bridge_.host.clock.steady();
  const auto end = [&] { count(device, jobFile, bridge_.host.clock.steady() - begun, triedAgain); };
  try {
    job();
  } catch (const std::exception&) {
    end();
    throw;
  }
  end();
}

void MeasuredDevices::count(Device device, std::string_view jobFile, std::chrono::microseconds duration,
                            bool triedAgain) {
  const Outcome outcome = outcomeOf(device, bridge_, activity_);
  const Identity staying = outcome == Outcome::failed ? staysAt(device, jobFile) : std::nullopt;
  staying_.at(static_cast<std::size_t>(device)) = staying;
  if (triedAgain && outcome == Outcome::failed) return;
  figures_.count(device, outcome);
  figures_.of(device).durations.add(duration);
  figures_.of(device).lastJob = bridge_.host.clock.sinceEpoch();
}

bool MeasuredDevices::isTriedAgain(Device device, std::string_view jobFile) {
  const Identity& staying = staying_.at(static_cast<std::size_t>(device));
  return staying && bridge_.host.files.identity(jobFile) == staying;
}

MeasuredDevices::Identity MeasuredDevices::staysAt(Device device, std::string_view jobFile) {
  if (!comesAgain(device)) return std::nullopt;
  platform::Files& files = bridge_.host.files;
  return files.exists(jobFile) ? files.identity(jobFile) : std::nullopt;
}

}  // namespace tellaxis
