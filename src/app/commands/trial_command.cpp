// Trial command: the trial, then its line in the diary.
#include "app/commands/trial_command.h"

#include <chrono>
#include <optional>
#include <set>

#include "core/bridge.h"
#include "core/settings.h"
#include "diary/diary.h"
#include "diary/reader.h"
#include "platform/clock.h"
#include "text/code_page.h"
#include "trial/trial.h"

namespace tellaxis {

namespace {

/// The line is written after the job's file has gone.
constexpr std::chrono::milliseconds lookPause{50};
constexpr std::chrono::milliseconds longestWait{2000};

/// Today's jobs of one name and device.
std::vector<DiaryEntry> entriesOf(platform::Host& host, const std::string& folder, Device device,
                                  const std::string& job) {
  const Day today = momentOf(host.clock).day;
  std::vector<DiaryEntry> entries =
      readDiary(host, folder, {.from = today, .to = today, .device = device, .problemsOnly = false});
  std::erase_if(entries, [&](const DiaryEntry& entry) { return entry.job != job; });
  return entries;
}

/// The entry that was not there before; nothing where none comes.
std::optional<DiaryEntry> newEntry(platform::Host& host, const std::string& folder, Device device,
                                   const std::string& job, const std::set<std::string>& before) {
  for (auto waited = lookPause; waited <= longestWait; waited += lookPause) {
    for (DiaryEntry& entry : entriesOf(host, folder, device, job))
      if (!before.contains(entry.id)) return entry;
    host.clock.sleep(lookPause);
  }
  return std::nullopt;
}

}  // namespace

CommandResult tryOnce(platform::Host& host, const platform::BridgeOptions& options, const std::string& mainFolder,
                      Device device, bool running) {
  Bridge bridge(host, options);
  setMainFolder(bridge.settings, mainFolder);
  CaricaImpostazioni(bridge);
  const std::string diary = diaryFolder(options, mainFolder);
  const std::string job = trialJobName(bridge, device);
  std::set<std::string> before;
  if (!diary.empty())
    for (const DiaryEntry& entry : entriesOf(host, diary, device, job)) before.insert(entry.id);

  const TrialEnd end = tryDevice(bridge, device, running);
  bool done = end == TrialEnd::taken;
  std::string text = std::string(namesOf(device).italian) + ": " + std::string(textOf(end));
  const bool wasTaken = done || end == TrialEnd::notTaken || end == TrialEnd::notFinished;
  const auto entry = wasTaken && !diary.empty() ? newEntry(host, diary, device, job, before) : std::nullopt;
  if (entry) {
    done = done && !namesOf(entry->outcome).problem;
    text += "; diario: " + std::string(namesOf(entry->outcome).italian);
    if (!entry->reason.empty()) text += " - " + entry->reason;
  }
  return {.status = done ? 0 : 1, .text = utf8FromCodePage(text) + "\n", .isReport = true};
}

}  // namespace tellaxis
