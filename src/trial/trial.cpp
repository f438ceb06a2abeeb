// Trial: the place of a device's jobs, the writing and the wait.
#include "trial/trial.h"

#include <algorithm>
#include <chrono>

#include "platform/clock.h"
#include "platform/files.h"
#include "trial/sample_jobs.h"

namespace tellaxis {

namespace {

constexpr std::chrono::milliseconds lookPause{50};
constexpr std::chrono::milliseconds longestWait{20'000};

constexpr std::string_view jobInDropFolder = "prova_tellaxis.txt";

struct EndText {
  TrialEnd end;
  std::string_view text;
};

constexpr EndText endTexts[] = {
    {TrialEnd::taken, "il ponte ha preso il lavoro di prova e l'ha finito"},
    {TrialEnd::notTried, "il misuratore fiscale non si prova"},
    {TrialEnd::deviceOff, "la periferica \xE8 spenta o il suo file non \xE8 impostato"},
    {TrialEnd::noSample, "il tipo impostato non si conosce: tellaxisd controlla dice che cosa correggere"},
    {TrialEnd::notRunning, "il ponte non \xE8 in funzione: nessuno prenderebbe il lavoro di prova"},
    {TrialEnd::placeTaken, "un altro lavoro sta gi\xE0 aspettando: riprovare fra poco"},
    {TrialEnd::notWritten, "il lavoro di prova non si pu\xF2 scrivere al suo posto"},
    {TrialEnd::notTaken,
     "dopo 20 secondi il lavoro di prova era ancora l\xEC, ed \xE8 stato tolto: tellaxisd controlla dice perch\xE9"},
    {TrialEnd::notFinished, "il ponte ha preso il lavoro di prova e dopo 20 secondi non l'ha ancora finito"},
};

/// Where a job waits, and where it lies while it is under way; the same where it is not moved.
struct Place {
  std::string waiting;
  std::string underWay;
};

Place placeOf(const Settings& settings, Device device) {
  switch (device) {
    case Device::display: return {.waiting = settings.Display_File, .underWay = settings.Display_File};
    case Device::slipPrinter: return {.waiting = settings.RF_File, .underWay = settings.RF_File};
    case Device::courtesyPrinter:
      return {.waiting = settings.mainFolder + "\\CortOrbis\\" + std::string(jobInDropFolder),
              .underWay = settings.mainFolder + "\\CortIN\\" + std::string(jobInDropFolder)};
    case Device::fiscalPrinter: break;
  }
  return {};
}

bool isActive(const Settings& settings, Device device) {
  switch (device) {
    case Device::display: return settings.Display_Active;
    case Device::slipPrinter: return settings.RF_Active;
    case Device::courtesyPrinter: return settings.Cort_Active;
    case Device::fiscalPrinter: break;
  }
  return false;
}

TrialEnd waitFor(platform::Host& host, const Place& place) {
  for (auto waited = lookPause; waited <= longestWait; waited += lookPause) {
    host.clock.sleep(lookPause);
    if (!host.files.exists(place.waiting) && !host.files.exists(place.underWay)) return TrialEnd::taken;
  }
  if (!host.files.exists(place.waiting)) return TrialEnd::notFinished;
  host.files.remove(place.waiting);
  return TrialEnd::notTaken;
}

}  // namespace

std::string_view textOf(TrialEnd end) { return std::ranges::find(endTexts, end, &EndText::end)->text; }

std::string trialJobName(const Bridge& bridge, Device device) {
  const std::string path = placeOf(bridge.settings, device).waiting;
  return path.substr(path.find_last_of("\\/") + 1);
}

TrialEnd tryDevice(const Bridge& bridge, Device device, bool running) {
  if (device == Device::fiscalPrinter) return TrialEnd::notTried;
  const Place place = placeOf(bridge.settings, device);
  if (!isActive(bridge.settings, device) || place.waiting.empty()) return TrialEnd::deviceOff;
  const std::string job = sampleJob(bridge, device);
  if (job.empty()) return TrialEnd::noSample;
  if (!running) return TrialEnd::notRunning;
  platform::Files& files = bridge.host.files;
  if (files.exists(place.waiting) || files.exists(place.underWay)) return TrialEnd::placeTaken;
  if (!files.create(place.waiting, job, platform::Readers::asUsual)) return TrialEnd::notWritten;
  return waitFor(bridge.host, place);
}

}  // namespace tellaxis
