// Polling: the tick and the job router.
#include "core/polling.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <limits>

#include "core/gate.h"
#include "core/ini/ini.h"
#include "core/paper.h"
#include "core/prompt.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "platform/trace.h"

namespace tellaxis {

namespace {

constexpr double slipRestPerSecond = 10;
constexpr double longestSlipRest = 30;

struct RoutedKind {
  std::string_view kind;
  Device device;
  std::string_view gateKey;
  std::string_view operation;
  void (Devices::*run)(std::string_view jobFile);
};

constexpr RoutedKind routedKinds[] = {
    {"MF", Device::fiscalPrinter, fiscalGate, "MF_Invia", &Devices::MF_Invia},
    {"RF", Device::slipPrinter, "RF_Vuoto", "", nullptr},
    {"CR", Device::courtesyPrinter, courtesyGate, "Cort_StampaFile", &Devices::Cort_StampaFile},
};

const RoutedKind* findKind(std::string_view kind) {
  for (const RoutedKind& row : routedKinds)
    if (row.kind == kind) return &row;
  return nullptr;
}

/// The jobs of one pass: room for 101 paths, and a 16-bit count that goes on counting the files that found no room.
class JobList {
 public:
  static constexpr std::int16_t capacity = 101;

  void add(std::string path) {
    if (count_ < capacity) jobs_.at(static_cast<std::size_t>(count_)) = std::move(path);
    if (count_ < std::numeric_limits<std::int16_t>::max()) ++count_;
  }

  bool isFull() const { return count_ >= capacity; }
  bool isEmpty() const { return count_ == 0; }
  std::int16_t count() const { return std::min<std::int16_t>(count_, capacity); }
  std::string& at(std::int16_t index) { return jobs_.at(static_cast<std::size_t>(index)); }

 private:
  std::array<std::string, capacity> jobs_;
  std::int16_t count_ = 0;
};

void createIfMissing(platform::Files& files, const std::string& folder) {
  if (!files.folderExists(folder)) files.createFolder(folder);
}

void endWithBackslash(std::string& folder) {
  if (!folder.ends_with('\\')) folder += '\\';
}

/// Whether the next job of this kind may begin, or waits for paper.
bool mayRun(const Bridge& bridge, const RoutedKind* routed) {
  return routed == nullptr || routed->run == nullptr || mayBegin(bridge, routed->device);
}

/// Whether these jobs wait for paper, which may end with every one of them: then one is moved at a time.
bool goesOneByOne(const Bridge& bridge, const RoutedKind* routed) {
  return bridge.paper != nullptr && routed != nullptr && bridge.paper->waits(routed->device);
}

/// What finds no room is moved all the same, unless waiting jobs are kept: then it waits for the next pass.
JobList moveAll(const Bridge& bridge, const std::string& dropFolder, const std::string& workFolder,
                const RoutedKind* routed) {
  platform::Files& files = bridge.host.files;
  JobList jobs;
  const auto passage = files.openPassage(dropFolder, workFolder);
  if (passage == nullptr) return jobs;
  while (!(bridge.options.keepWaiting && jobs.isFull())) {
    const auto name = passage->next();
    if (!name) break;
    if (!isWhole(bridge, dropFolder + *name)) continue;
    if (jobs.isEmpty() && !mayRun(bridge, routed)) break;
    jobs.add(workFolder + *name);
    if (passage->isTaken()) files.remove(workFolder + *name);
    passage->move();
    if (goesOneByOne(bridge, routed)) break;
  }
  return jobs;
}

/// Runs one job of a device. Whatever goes wrong in it, lack of memory included, is the job's own end and not the
/// bridge's: then it is false.
template <class Job>
bool runJob(Bridge& bridge, std::string_view operation, std::string_view jobFile, Job job) {
  try {
    job();
    return true;
  } catch (const std::exception& failure) {
    bridge.host.trace.failed(operation, jobFile, failure.what());
    return false;
  }
}

/// Runs and deletes the jobs in their order until the program is to end, and gives back how many were begun.
std::int16_t runAll(Bridge& bridge, Devices& devices, JobList& jobs, const RoutedKind* routed) {
  std::int16_t begun = 0;
  for (; begun < jobs.count() && !bridge.stopRequested(); ++begun) {
    std::string& job = jobs.at(begun);
    if (routed != nullptr && routed->run != nullptr)
      runJob(bridge, routed->operation, job, [&] { (devices.*routed->run)(job); });
    bridge.host.files.remove(job);
    job.clear();
  }
  return begun;
}

}  // namespace

void SmistaFile(Bridge& bridge, Devices& devices, std::string& dropFolder, std::string_view settingsFile,
                std::string& workFolder, std::string_view kind) {
  platform::Files& files = bridge.host.files;
  createIfMissing(files, dropFolder);
  createIfMissing(files, workFolder);
  endWithBackslash(dropFolder);
  endWithBackslash(workFolder);

  const RoutedKind* routed = findKind(kind);
  for (std::int16_t round = 0; round < JobList::capacity; ++round) {
    JobList jobs = moveAll(bridge, dropFolder, workFolder, routed);
    for (std::int16_t left = runAll(bridge, devices, jobs, routed); left < jobs.count(); ++left)
      files.move(jobs.at(left), dropFolder + jobs.at(left).substr(workFolder.size()));
    if (jobs.isEmpty() || !goesOneByOne(bridge, routed) || bridge.stopRequested()) break;
  }
  if (routed != nullptr) ScriviImpostazione(bridge.host, routed->gateKey, yes, settingsFile);
}

void Polling::Timer1_Timer() {
  if (ticking_) return;
  ticking_ = true;
  if (bridge_.paper != nullptr) bridge_.paper->beginTick();
  watchJobs(bridge_, watched_);
  for (const auto poll :
       {&Polling::pollDisplay, &Polling::pollFiscalPrinter, &Polling::pollSlipPrinter, &Polling::pollCourtesyPrinter})
    if (!bridge_.stopRequested()) (this->*poll)();
  ticking_ = false;
}

void Polling::pollDisplay() {
  const Settings& settings = bridge_.settings;
  if (!settings.Display_Active || settings.Display_File.empty()) return;
  if (!bridge_.host.files.exists(settings.Display_File) || !isWhole(bridge_, settings.Display_File)) return;
  runJob(bridge_, "LanciaFileDisplay", settings.Display_File, [this] { devices_.LanciaFileDisplay(); });
}

void Polling::pollFiscalPrinter() {
  const Settings& settings = bridge_.settings;
  if (!settings.MF_Active || !gateIsOpen(bridge_, fiscalGate) || settings.MF_File.empty()) return;
  platform::Files& files = bridge_.host.files;
  if (!settings.MF_File_Output.empty() && files.exists(settings.MF_File_Output)) files.remove(settings.MF_File_Output);
  std::string dropFolder = settings.mainFolder + "\\Orbis";
  std::string workFolder = settings.mainFolder + "\\IN";
  SmistaFile(bridge_, devices_, dropFolder, settings.settingsFile, workFolder, "MF");
  ScriviImpostazione(bridge_.host, fiscalGate, yes, settings.settingsFile);
}

void Polling::pollSlipPrinter() {
  const Settings& settings = bridge_.settings;
  if (!settings.RF_Active || !bridge_.host.files.exists(settings.RF_File)) return;
  if (!isWhole(bridge_, settings.RF_File)) return;
  if (settings.RF_Stampante.empty() || !isGreaterThanZero(settings.RF_Seriale, bridge_.host.locale.regional())) return;
  if (slipRests()) return;
  const double began = bridge_.host.clock.secondsSinceMidnight();
  if (!mayBegin(bridge_, Device::slipPrinter)) return;
  const bool done = runJob(bridge_, "LanciaFileRF", settings.RF_File, [this] { devices_.LanciaFileRF(); });
  slipFailedAt_ = bridge_.host.clock.secondsSinceMidnight();
  slipRest_ = done ? 0 : std::clamp(slipRestPerSecond * (slipFailedAt_ - began), 0.0, longestSlipRest);
}

/// A printer that does not answer costs time at each attempt, and the other devices wait meanwhile: the slip is tried
/// again later, the later the longer the attempt took. Past midnight, or set back, the clock ends the rest.
bool Polling::slipRests() const {
  const double since = bridge_.host.clock.secondsSinceMidnight() - slipFailedAt_;
  return since >= 0 && since < slipRest_;
}

void Polling::pollCourtesyPrinter() {
  const Settings& settings = bridge_.settings;
  if (!settings.Cort_Active || !gateIsOpen(bridge_, courtesyGate)) return;
  std::string dropFolder = settings.mainFolder + "\\CortOrbis";
  std::string workFolder = settings.mainFolder + "\\CortIN";
  SmistaFile(bridge_, devices_, dropFolder, settings.settingsFile, workFolder, "CR");
  ScriviImpostazione(bridge_.host, courtesyGate, yes, settings.settingsFile);
}

}  // namespace tellaxis
