// Diary: what a job costs more with diary and archive, and how long a day of 100,000 jobs takes to read.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "app/job_diary.h"
#include "bench_desk.h"
#include "core/activity.h"
#include "core/polling.h"
#include "diary/reader.h"
#include "receipts.h"

namespace {

namespace fs = std::filesystem;
using namespace tellaxis;
using namespace tellaxis::bench;

constexpr int rounds = 100;
constexpr int jobsOfABusyDay = 100'000;

double pass(Bridge& bridge, Devices& devices, const std::string& folder) {
  dropJobs(folder + "/Orbis");
  return microseconds([&] {
    std::string drop = folder + "\\Orbis";
    std::string work = folder + "\\IN";
    SmistaFile(bridge, devices, drop, bridge.settings.settingsFile, work, "MF");
  });
}

void measurePasses(platform::Host& host, const std::string& folder, bool archive) {
  platform::BridgeOptions options;
  options.diary = archive ? "diario" : "solo";
  options.archive = archive;
  Bridge bridge(host, options);
  setMainFolder(bridge.settings, folder);
  bridge.settings.MF_File = folder + "\\in.txt";
  CopyingDevices devices(bridge);
  Activity activity;
  NotedDevices noted(devices, activity, bridge);
  const auto diary = JobDiary::open(bridge, folder, noted, activity);
  std::vector<double> without;
  std::vector<double> with;
  for (int round = 0; round < rounds; ++round) {
    without.push_back(pass(bridge, devices, folder));
    with.push_back(pass(bridge, diary->devices(), folder));
  }
  std::printf("a job without diary: %.1f us; with diary%s: %.1f us more\n", median(without) / jobs,
              archive ? " and archive" : "", (median(with) - median(without)) / jobs);
}

void measureReading(platform::Host& host, const std::string& folder) {
  const std::string diary = folder + "/letto";
  fs::create_directories(diary);
  const Day day{std::chrono::year(2026) / 11 / 21};
  DiaryEntry entry{.time = "2026-11-21T10:05:42.123", .job = "scontrino.txt", .bytes = 2048, .ms = 12};
  entry.copy = "2026-11-21\\100542-123-scontrino.txt";
  {
    std::ofstream file(diary + "/2026-11-21.jsonl");
    for (int i = 1; i <= jobsOfABusyDay; ++i) {
      entry.id = idPrefix(day) + std::to_string(i);
      file << lineOf(entry) << '\n';
    }
  }
  std::size_t read = 0;
  const double time = microseconds([&] { read = readDay(host, folder + "\\letto", day).size(); });
  std::printf("%zu jobs of a day read in %.0f ms\n", read, time / 1000);
}

int measure(platform::Host& host, const std::string& folder) {
  for (const bool archive : {false, true}) measurePasses(host, folder, archive);
  measureReading(host, folder);
  return 0;
}

}  // namespace

int main(int count, char** words) { return onDesk(count, words, "MF_Vuoto=-1\r\n", measure); }
