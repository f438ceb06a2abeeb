// Device status: the words of the strip.
#include "ui/model/device_status.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "core/paper.h"
#include "platform/printer_state.h"

namespace tellaxis::ui {

namespace {

struct DeviceRow {
  Device device;
  std::string_view title;
  bool Settings::*active;
  std::string_view on;
  std::string_view off;
};

constexpr DeviceRow deviceRows[] = {
    {Device::fiscalPrinter, "Misuratore fiscale", &Settings::MF_Active, "attivo", "non attivo"},
    {Device::courtesyPrinter, "Preconto", &Settings::Cort_Active, "attivo", "non attivo"},
    {Device::slipPrinter, "Ricevuta fiscale", &Settings::RF_Active, "attiva", "non attiva"},
    {Device::display, "Display", &Settings::Display_Active, "attivo", "non attivo"},
};
static_assert(std::size(deviceRows) == deviceCount);

const DeviceRow& rowOf(Device device) { return *std::ranges::find(deviceRows, device, &DeviceRow::device); }

template <typename... Numbers>
std::string formatted(const char* format, Numbers... numbers) {
  char text[32] = {};
  std::snprintf(text, sizeof text, format, numbers...);
  return text;
}

std::string timeOf(const LastJob& job) {
  return formatted("%02d:%02d:%02d", job.ended.hour, job.ended.minute, job.second);
}

std::string lineOf(const LastJob& job) {
  const std::string text = timeOf(job) + " " + job.name;
  if (job.failure.empty()) return text + " eseguito";
  return job.printerSaysNo ? text + ": " + job.failure : text + " con errori";
}

std::string helpOf(const LastJob& job) {
  const std::string day = formatted("%02d/%02d/%04d ", job.ended.day, job.ended.month, job.ended.year);
  const std::string text = day + timeOf(job) + " " + job.name;
  if (job.failure.empty()) return text + ": eseguito";
  return job.printerSaysNo ? text + ": " + job.failure : text + ": con errori, il primo\n" + job.failure;
}

}  // namespace

std::string_view titleOf(Device device) { return rowOf(device).title; }

DeviceStatus statusOf(const Bridge& bridge, const Activity& activity, Device device) {
  const DeviceRow& row = rowOf(device);
  DeviceStatus status{.active = bridge.settings.*row.active};
  status.state = status.active ? row.on : row.off;
  const auto& job = activity.lastJob(device);
  const auto held = bridge.paper == nullptr ? std::nullopt : bridge.paper->heldBack(device);
  if (held && status.active) {
    status.heldBack = true;
    status.line = platform::wordsOf(*held).italian;
    status.help = "I lavori aspettano: " + status.line;
  } else if (job) {
    status.failed = !job->failure.empty();
    status.line = lineOf(*job);
    status.help = helpOf(*job);
  } else {
    status.line = "nessun lavoro";
    status.help = "Nessun lavoro dall'avvio del programma";
  }
  return status;
}

}  // namespace tellaxis::ui
