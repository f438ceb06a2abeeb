// Metrics file: the families, and what is looked at for them.
#include "metrics/metrics_file.h"

#include <span>
#include <utility>

#include "core/device_names.h"
#include "core/gate.h"
#include "core/paper.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "text/code_page.h"

namespace tellaxis {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::microseconds interval = 15s;
/// Where a file cannot be replaced, as while somebody holds it, trying takes its time.
constexpr std::chrono::microseconds afterFailure = 60s;

constexpr Outcome ofFiscalJobs[] = {Outcome::delivered, Outcome::confirmed, Outcome::unanswered,
                                    Outcome::givenUp,   Outcome::failed,    Outcome::discarded};
constexpr Outcome ofCourtesyJobs[] = {Outcome::done, Outcome::failed, Outcome::discarded};
constexpr Outcome ofSingleJobs[] = {Outcome::done, Outcome::failed};

/// Where the jobs of a device wait, and what may become of them. Only the diary can tell an unconfirmed one.
struct DeviceRow {
  Device device;
  bool Settings::*isActive;
  std::string_view dropFolder;  ///< under the main folder; empty where one file waits
  std::string Settings::*file;
  std::string_view gateKey;  ///< empty for a device without a gate
  std::span<const Outcome> outcomes;
};

constexpr DeviceRow rows[] = {
    {Device::fiscalPrinter, &Settings::MF_Active, "\\Orbis", nullptr, fiscalGate, ofFiscalJobs},
    {Device::display, &Settings::Display_Active, "", &Settings::Display_File, "", ofSingleJobs},
    {Device::slipPrinter, &Settings::RF_Active, "", &Settings::RF_File, "", ofSingleJobs},
    {Device::courtesyPrinter, &Settings::Cort_Active, "\\CortOrbis", nullptr, courtesyGate, ofCourtesyJobs},
};

std::uint64_t waitingJobs(const Bridge& bridge, const DeviceRow& row) {
  platform::Files& files = bridge.host.files;
  if (row.dropFolder.empty()) return files.exists(bridge.settings.*row.file) ? 1 : 0;
  const std::string folder = bridge.settings.mainFolder + std::string(row.dropFolder);
  if (!files.folderExists(folder)) return 0;
  return files.list(folder).value_or(std::vector<std::string>()).size();
}

/// Calls `take` with the row and the name of each device that is switched on.
template <class Take>
void forEachActive(const Settings& settings, Take take) {
  for (const DeviceRow& row : rows)
    if (settings.*row.isActive) take(row, namesOf(row.device).name);
}

}  // namespace

MetricsFile::MetricsFile(Bridge& bridge, Figures& figures, std::string path, std::string version)
    : bridge_(bridge),
      figures_(figures),
      path_(std::move(path)),
      version_(std::move(version)),
      started_(bridge.host.clock.sinceEpoch()),
      due_(bridge.host.clock.steady()) {}

void MetricsFile::tickEnded(std::chrono::microseconds duration) {
  figures_.ticks.add(duration);
  if (bridge_.host.clock.steady() < due_) return;
  write();
  figures_.ticks.nextInterval();
}

void MetricsFile::write() {
  const bool written = bridge_.host.files.create(path_, text(), platform::Readers::everybody);
  due_ = bridge_.host.clock.steady() + (written ? interval : afterFailure);
}

std::string MetricsFile::text() {
  MetricsText text;
  program(text);
  devices(text);
  jobs(text);
  durations(text);
  return text.end();
}

void MetricsFile::program(MetricsText& text) {
  text.family("tellaxis_info", "gauge", "Versione del programma e ruolo della postazione.");
  text.sample("", {{"version", version_}, {"role", bridge_.options.role}}, 1U);
  text.family("tellaxis_start_timestamp_seconds", "gauge", "Quando il ponte si è avviato, in tempo Unix.");
  text.sample("", {}, started_);
  text.family("tellaxis_tick_seconds_max", "gauge", "Durata del controllo più lungo degli ultimi cinque minuti.");
  text.sample("", {}, figures_.ticks.longest());
  text.family("tellaxis_failed_steps_total", "counter", "Passi non riusciti dall'avvio, per operazione.");
  for (const auto& [operation, count] : figures_.failedSteps.counts())
    text.sample("", {{"operation", utf8FromCodePage(operation)}}, count);
}

void MetricsFile::devices(MetricsText& text) {
  text.family("tellaxis_waiting_jobs", "gauge", "Lavori che aspettano la periferica.");
  forEachActive(bridge_.settings, [&](const DeviceRow& row, std::string_view name) {
    text.sample("", {{"device", name}}, waitingJobs(bridge_, row));
  });
  text.family("tellaxis_gate_open", "gauge", "1 quando l'applicativo di cassa lascia passare i lavori.");
  forEachActive(bridge_.settings, [&](const DeviceRow& row, std::string_view name) {
    if (!row.gateKey.empty()) text.sample("", {{"device", name}}, gateIsOpen(bridge_, row.gateKey) ? 1U : 0U);
  });
  text.family("tellaxis_device_ready", "gauge",
              "1 quando la stampante ha detto di poter stampare, 0 quando ha detto no.");
  if (bridge_.paper == nullptr) return;
  forEachActive(bridge_.settings, [&](const DeviceRow& row, std::string_view name) {
    const auto said = bridge_.paper->lastSaid(row.device);
    if (said && *said != platform::PrinterState::unknown)
      text.sample("", {{"device", name}}, platform::wordsOf(*said).saysNo ? 0U : 1U);
  });
}

void MetricsFile::jobs(MetricsText& text) {
  text.family("tellaxis_jobs_total", "counter", "Lavori dall'avvio, per esito.");
  forEachActive(bridge_.settings, [&](const DeviceRow& row, std::string_view name) {
    const auto sample = [&](Outcome outcome) {
      text.sample("", {{"device", name}, {"outcome", namesOf(outcome).name}},
                  figures_.of(row.device).jobs.at(static_cast<std::size_t>(outcome)));
    };
    for (const Outcome outcome : row.outcomes) sample(outcome);
    if (!bridge_.options.diary.empty()) sample(Outcome::unconfirmed);
  });
  text.family("tellaxis_last_job_timestamp_seconds", "gauge", "Quando è finito l'ultimo lavoro, in tempo Unix.");
  forEachActive(bridge_.settings, [&](const DeviceRow& row, std::string_view name) {
    if (const auto& last = figures_.of(row.device).lastJob) text.sample("", {{"device", name}}, *last);
  });
}

void MetricsFile::durations(MetricsText& text) {
  text.family("tellaxis_job_seconds", "histogram", "Durata dei lavori.");
  forEachActive(bridge_.settings, [&](const DeviceRow& row, std::string_view name) {
    const Durations& durations = figures_.of(row.device).durations;
    for (std::size_t i = 0; i < Durations::limitCount; ++i)
      text.sample("_bucket", {{"device", name}, {"le", Durations::limits().at(i).text}}, durations.upTo(i));
    const std::uint64_t all = durations.upTo(Durations::limitCount);
    text.sample("_bucket", {{"device", name}, {"le", "+Inf"}}, all);
    text.sample("_sum", {{"device", name}}, durations.sum());
    text.sample("_count", {{"device", name}}, all);
  });
}

}  // namespace tellaxis
