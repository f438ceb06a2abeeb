// Reprint: the rules about fiscal jobs, and the place of each device's jobs.
#include "diary/reprint.h"

#include <algorithm>
#include <string>

#include "diary/reader.h"
#include "platform/files.h"

namespace tellaxis {

namespace {

struct ResultText {
  Reprint result;
  std::string_view text;
};

constexpr ResultText resultTexts[] = {
    {Reprint::done, "rimesso in coda"},
    {Reprint::unknownId, "il diario non ha questo lavoro"},
    {Reprint::noCopy, "il diario non ne ha conservato il file (archive)"},
    {Reprint::copyGone, "il file conservato non c'\xE8 pi\xF9"},
    {Reprint::isFiscal, "\xE8 un lavoro fiscale: serve --fiscale"},
    {Reprint::maybeIssued, "lo scontrino \xE8 uscito, o pu\xF2 essere uscito: serve --anche-se-emesso"},
    {Reprint::noPlace, "la periferica \xE8 spenta o il suo file non \xE8 impostato"},
    {Reprint::notTaken, "il ponte non \xE8 in funzione, e al suo avvio i lavori in attesa vengono scartati"},
    {Reprint::placeTaken, "un lavoro con questo nome sta gi\xE0 aspettando"},
    {Reprint::notWritten, "il file non si pu\xF2 scrivere al suo posto"},
};

constexpr Outcome issuedOutcomes[] = {Outcome::delivered, Outcome::confirmed, Outcome::unconfirmed};

std::string placeOf(const Settings& settings, const DiaryEntry& entry) {
  switch (entry.device) {
    case Device::fiscalPrinter: return settings.MF_Active ? settings.mainFolder + "\\Orbis\\" + entry.job : "";
    case Device::courtesyPrinter: return settings.Cort_Active ? settings.mainFolder + "\\CortOrbis\\" + entry.job : "";
    case Device::slipPrinter: return settings.RF_Active ? settings.RF_File : "";
    case Device::display: return settings.Display_Active ? settings.Display_File : "";
  }
  return {};
}

}  // namespace

std::string_view textOf(Reprint result) { return std::ranges::find(resultTexts, result, &ResultText::result)->text; }

ReprintConsent neededConsent(const DiaryEntry& entry) {
  if (entry.device != Device::fiscalPrinter) return {};
  const bool issued = std::ranges::find(issuedOutcomes, entry.outcome) != std::end(issuedOutcomes);
  return {.fiscal = true, .evenIfIssued = issued};
}

Reprint reprint(const Bridge& bridge, std::string_view diaryFolder, std::string_view id, ReprintConsent consent,
                bool dropFoldersServed) {
  platform::Files& files = bridge.host.files;
  const auto entry = findEntry(bridge.host, diaryFolder, id);
  if (!entry) return Reprint::unknownId;
  const ReprintConsent needed = neededConsent(*entry);
  if (needed.fiscal && !consent.fiscal) return Reprint::isFiscal;
  if (needed.evenIfIssued && !consent.evenIfIssued) return Reprint::maybeIssued;
  if (entry->copy.empty()) return Reprint::noCopy;
  const std::string copy = std::string(diaryFolder) + "\\" + entry->copy;
  if (!files.exists(copy)) return Reprint::copyGone;
  const std::string place = placeOf(bridge.settings, *entry);
  if (place.empty()) return Reprint::noPlace;
  const bool toDropFolder = entry->device == Device::fiscalPrinter || entry->device == Device::courtesyPrinter;
  if (toDropFolder && !dropFoldersServed) return Reprint::notTaken;
  if (files.exists(place)) return Reprint::placeTaken;
  return files.copy(copy, place) ? Reprint::done : Reprint::notWritten;
}

}  // namespace tellaxis
