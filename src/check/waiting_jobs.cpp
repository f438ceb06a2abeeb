// Waiting jobs: counting, and the age of the oldest.
#include "check/waiting_jobs.h"

#include <algorithm>
#include <chrono>

#include "check/words.h"
#include "core/ini/ini.h"
#include "platform/files.h"
#include "platform/locale.h"

namespace tellaxis {

namespace {

/// A job under way may well keep the others waiting for so long.
constexpr std::chrono::seconds longestWait{10};

struct WaitingJobs {
  std::size_t count = 0;
  std::chrono::seconds oldest{0};
};

WaitingJobs jobsIn(const CheckScene& scene, const std::string& folder) {
  WaitingJobs jobs;
  if (!scene.inspection.look(folder).isFolder) return jobs;
  const auto names = scene.bridge.host.files.list(folder);
  if (!names) return jobs;
  for (const std::string& name : *names) {
    const platform::PathLook look = scene.inspection.look(std::string(folder).append("\\").append(name));
    if (!look.isFile) continue;
    ++jobs.count;
    jobs.oldest = std::max(jobs.oldest, look.age);
  }
  return jobs;
}

bool gateIsOpen(const CheckScene& scene, std::string_view gateKey) {
  platform::Host& host = scene.bridge.host;
  const Value gate = LeggiImpostazione(host, gateKey, yes, scene.bridge.settings.settingsFile);
  return truthFrom(gate, host.locale.regional()).value_or(true);
}

}  // namespace

void checkDropFolder(const CheckScene& scene, Findings& findings, const std::string& folder, std::string_view gateKey) {
  const WaitingJobs jobs = jobsIn(scene, folder);
  const std::string amount = counted(jobs.count, "lavoro aspetta", "lavori aspettano");
  if (!gateIsOpen(scene, gateKey)) {
    const std::string waiting =
        jobs.count == 0 ? "nessun lavoro aspetta" : amount + ", il primo da " + durationText(jobs.oldest);
    findings.add(Code::gateClosed, "La chiave " + std::string(gateKey) + " \xE8 0: " + waiting + " in " + folder + ".");
  } else if (jobs.count > 0 && jobs.oldest > longestWait) {
    findings.add(Code::jobsWaiting, amount + " in " + folder + ", il primo da " + durationText(jobs.oldest) + ".");
  }
}

void checkJobFile(const CheckScene& scene, Findings& findings, const std::string& file) {
  const platform::PathLook look = scene.inspection.look(file);
  if (look.isFile && look.age > longestWait)
    findings.add(Code::jobsWaiting, "Il file " + file + " aspetta da " + durationText(look.age) + ".");
}

}  // namespace tellaxis
