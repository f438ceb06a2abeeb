// Metrics: how long a tick takes longer that writes the metrics file, with nothing waiting and with many jobs waiting.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench_desk.h"
#include "metrics/metrics_file.h"
#include "receipts.h"

namespace {

namespace fs = std::filesystem;
using namespace tellaxis;
using namespace tellaxis::bench;

constexpr int rounds = 1000;
constexpr int manyJobs = 1000;

void measureWrites(MetricsFile& file, const std::string& what) {
  std::vector<double> times;
  times.reserve(rounds);
  for (int round = 0; round < rounds; ++round) times.push_back(microseconds([&] { file.write(); }));
  std::ranges::sort(times);
  std::printf("the metrics file with %s: median %.0f us, 99 of 100 within %.0f us\n", what.c_str(), median(times),
              times.at(times.size() * 99 / 100));
}

int measure(platform::Host& host, const std::string& folder) {
  platform::BridgeOptions options;
  options.diary = "diario";
  options.metrics = "tellaxis.prom";
  Bridge bridge(host, options);
  setMainFolder(bridge.settings, folder);
  bridge.settings.MF_Active = bridge.settings.Display_Active = true;
  bridge.settings.RF_Active = bridge.settings.Cort_Active = true;
  bridge.settings.Display_File = folder + "\\display.txt";
  bridge.settings.RF_File = folder + "\\ricevuta.txt";
  Figures figures;
  for (int operation = 0; operation < 10; ++operation)
    figures.failedSteps.failed("passo " + std::to_string(operation), "", "");
  MetricsFile file(bridge, figures, folder + "\\tellaxis.prom", "1.0");
  measureWrites(file, "four devices and nothing waiting");
  for (int job = 0; job < manyJobs; ++job)
    std::ofstream(folder + "/Orbis/" + std::to_string(10'000 + job) + ".txt") << "x";
  measureWrites(file, std::to_string(manyJobs) + " jobs waiting");
  std::printf("it holds %zu bytes\n", static_cast<std::size_t>(fs::file_size(folder + "/tellaxis.prom")));
  return 0;
}

}  // namespace

int main(int count, char** words) { return onDesk(count, words, "MF_Vuoto=-1\r\nCort_Vuoto=-1\r\n", measure); }
