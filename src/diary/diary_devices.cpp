// Diary devices: what is noted before a job and after it.
#include "diary/diary_devices.h"

#include <exception>

#include "platform/files.h"
#include "platform/trace.h"

namespace tellaxis {

DiaryDevices::~DiaryDevices() {
  for (const Device device : {Device::display, Device::slipPrinter}) endOfSeries(device);
}

void DiaryDevices::LanciaFileDisplay() {
  note(Device::display, bridge_.settings.Display_File, [&] { devices_.LanciaFileDisplay(); });
}

void DiaryDevices::MF_Invia(std::string_view jobFile) {
  note(Device::fiscalPrinter, jobFile, [&] { devices_.MF_Invia(jobFile); });
}

void DiaryDevices::LanciaFileRF() {
  note(Device::slipPrinter, bridge_.settings.RF_File, [&] { devices_.LanciaFileRF(); });
}

void DiaryDevices::Cort_StampaFile(std::string_view jobFile) {
  note(Device::courtesyPrinter, jobFile, [&] { devices_.Cort_StampaFile(jobFile); });
}

/// Whatever goes wrong with the diary, lack of memory included, is traced and costs the job nothing.
template <typename Step>
void DiaryDevices::attempt(std::string_view jobFile, Step step) {
  try {
    step();
  } catch (const std::exception& failure) {
    bridge_.host.trace.failed("diario", jobFile, failure.what());
  }
}

template <typename Job>
void DiaryDevices::note(Device device, std::string_view jobFile, Job job) {
  UnderWay underWay;
  attempt(jobFile, [&] { underWay = begin(device, jobFile); });
  try {
    job();
  } catch (const std::exception&) {
    attempt(jobFile, [&] { finish(underWay, jobFile); });
    throw;
  }
  attempt(jobFile, [&] { finish(underWay, jobFile); });
}

DiaryDevices::UnderWay DiaryDevices::begin(Device device, std::string_view jobFile) {
  const Content content = contentFor(device, jobFile);
  const auto before = staying_.find(device);
  const bool triedAgain = before != staying_.end() && before->second.content == content.mark;
  if (!triedAgain) endOfSeries(device);
  UnderWay underWay{.entry = triedAgain ? before->second.entry : DiaryEntry{}, .content = content.mark, .begun = {}};
  if (triedAgain) ++underWay.entry.count;
  underWay.entry.device = device;
  underWay.entry.bytes = content.bytes;
  diary_.begin(underWay.entry, jobFile, triedAgain);
  underWay.begun = momentOf(bridge_.host.clock);
  return underWay;
}

void DiaryDevices::finish(UnderWay& underWay, std::string_view jobFile) {
  DiaryEntry& entry = underWay.entry;
  if (entry.id.empty()) return;
  const Device device = entry.device;
  entry.ms = between(underWay.begun, momentOf(bridge_.host.clock)).count();
  entry.outcome = outcomeOf(device, bridge_, activity_);
  const auto& job = activity_.lastJob(device);
  entry.reason = job ? job->failure : std::string();
  if (entry.outcome == Outcome::failed && entry.reason.empty()) entry.reason = "niente da consegnare o nessun driver";

  if (comesAgain(device) && entry.outcome == Outcome::failed && bridge_.host.files.exists(jobFile)) {
    const bool isFirst = entry.count == 1;
    staying_[device] = Staying{.entry = entry, .content = underWay.content, .counted = !isFirst};
    return isFirst ? diary_.end(entry) : diary_.endAsBefore();
  }
  staying_.erase(device);
  diary_.end(entry);
}

/// What cannot come again need not be read to be known again.
Content DiaryDevices::contentFor(Device device, std::string_view jobFile) const {
  platform::Files& files = bridge_.host.files;
  if (comesAgain(device)) return contentOf(files, jobFile);
  const auto identity = files.identity(jobFile);
  return {.bytes = identity ? static_cast<std::int64_t>(identity->size) : 0};
}

/// The file that stayed will not be tried again: its line gets the count.
void DiaryDevices::endOfSeries(Device device) {
  const auto found = staying_.find(device);
  if (found == staying_.end()) return;
  if (found->second.counted) diary_.end(found->second.entry);
  staying_.erase(found);
}

}  // namespace tellaxis
