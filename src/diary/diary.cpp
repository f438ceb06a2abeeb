// Diary: days, copies, the note of the job under way, lines.
#include "diary/diary.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "core/input/text_lines.h"
#include "core/option_path.h"
#include "diary/reader.h"
#include "platform/files.h"

namespace tellaxis {

namespace {

constexpr std::string_view noteOfLastBegun = "\\ultimo.json";

/// Lines of that note before it begins anew.
constexpr int mostNotes = 1000;

/// How a day's file ends.
struct DayEnd {
  std::int64_t number = 0;  ///< the highest in it
  bool wholeLine = true;
};

std::string_view bareName(std::string_view path) { return path.substr(path.find_last_of("\\/:") + 1); }

/// The number behind the day in the id of a line; 0 where the line has none. Reading the whole line would take ten
/// times as long, at every start.
std::int64_t numberIn(std::string_view line, std::string_view prefix) {
  constexpr std::string_view beginning = "{\"id\":\"";
  if (!line.starts_with(beginning) || line.substr(beginning.size(), prefix.size()) != prefix) return 0;
  const std::string_view digits = line.substr(beginning.size() + prefix.size());
  std::int64_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

DayEnd endOf(platform::Files& files, const std::string& file, std::string_view prefix) {
  DayEnd end;
  if (!files.exists(file)) return end;
  TextLines lines(files.openInput(file));
  while (const auto line = lines.next()) {
    end.number = std::max(end.number, numberIn(*line, prefix));
    end.wholeLine = lines.ended();
  }
  return end;
}

}  // namespace

std::string diaryFolder(const platform::BridgeOptions& options, std::string_view mainFolder) {
  return optionPath(options.diary, mainFolder);
}

void Diary::begin(DiaryEntry& entry, std::string_view jobFile, bool triedAgain) {
  if (!triedAgain) keep(entry, jobFile);
  DiaryEntry underWay = entry;
  underWay.outcome = Outcome::unconfirmed;
  const std::string note = folder_ + std::string(noteOfLastBegun);
  // One more line costs less than a new file; the last whole line counts.
  if (notes_++ % mostNotes == 0)
    host_.files.create(note, lineOf(underWay), platform::Readers::asUsual);
  else
    host_.files.append(note, "\n" + lineOf(underWay));
}

void Diary::end(const DiaryEntry& entry) {
  if (const auto day = dayOfId(entry.id)) append(*day, entry);
}

void Diary::endAsBefore() { host_.files.remove(folder_ + std::string(noteOfLastBegun)); }

void Diary::keep(DiaryEntry& entry, std::string_view jobFile) {
  const Moment now = momentOf(host_.clock);
  openDay(now.day);
  entry.id = idPrefix(now.day) + std::to_string(++number_);
  entry.time = textOf(now);
  entry.job = bareName(jobFile);
  if (!keeping_.archive) return;
  entry.copy = copyName(now, jobFile);
  if (!host_.files.copyToNew(jobFile, folder_ + "\\" + entry.copy)) entry.copy.clear();
}

void Diary::forget(const DiaryEntry& entry) {
  if (!entry.copy.empty()) host_.files.remove(folder_ + "\\" + entry.copy);
}

std::optional<Diary::LastBegun> Diary::lastBegun() {
  const std::string note = folder_ + std::string(noteOfLastBegun);
  if (!host_.files.exists(note)) return std::nullopt;
  TextLines lines(host_, note);
  std::optional<DiaryEntry> entry;
  while (const auto line = lines.next())
    if (auto begun = entryFrom(*line)) entry = std::move(begun);
  if (!entry) return std::nullopt;
  const auto written = findEntry(host_, folder_, entry->id);
  return LastBegun{.entry = std::move(*entry), .ended = written && written->count >= entry->count};
}

/// Makes the day's folders, clears old days away, and finds out how the day's file goes on.
void Diary::openDay(Day day) {
  if (day_ == day) return;
  makeFolders(day);
  removeOldDays(day);
  day_ = day;
  const DayEnd end = endOf(host_.files, dayFile(folder_, day), idPrefix(day));
  number_ = end.number;
  freshLine_ = end.wholeLine;
}

void Diary::makeFolders(Day day) {
  platform::Files& files = host_.files;
  if (!files.folderExists(folder_)) files.createFolder(folder_);
  const std::string copies = folder_ + "\\" + textOf(day);
  if (keeping_.archive && !files.folderExists(copies)) files.createFolder(copies);
}

void Diary::removeOldDays(Day today) {
  if (!keeping_.days) return;
  platform::Files& files = host_.files;
  for (const Day day : daysIn(files, folder_)) {
    if (day >= today - std::chrono::days(*keeping_.days)) return;
    // The lines go last, so that copies which could not be deleted are tried again.
    const std::string copies = folder_ + "\\" + textOf(day);
    if (files.folderExists(copies) && !(files.removeAll(copies) && files.removeFolder(copies))) continue;
    files.remove(dayFile(folder_, day));
  }
}

/// No two copies have the same name, not even those of the same moment.
std::string Diary::copyName(const Moment& moment, std::string_view jobFile) {
  if (moment.day == lastCopy_.day && moment.time <= lastCopy_.time)
    lastCopy_.time += std::chrono::milliseconds(1);
  else
    lastCopy_ = moment;
  return textOf(lastCopy_.day) + "\\" + fileTime(lastCopy_) + "-" + std::string(bareName(jobFile));
}

void Diary::append(Day day, const DiaryEntry& entry) {
  const std::string file = dayFile(folder_, day);
  const std::string line = lineOf(entry) + "\n";
  const bool isOpen = day_ == day;
  const bool fresh = isOpen ? freshLine_ : endOf(host_.files, file, {}).wholeLine;
  if (host_.files.append(file, fresh ? line : "\n" + line)) {
    if (isOpen) freshLine_ = true;
    return;
  }
  // The folder may have gone, or half the line may be there.
  makeFolders(day);
  const bool written = host_.files.append(file, "\n" + line);
  if (isOpen) freshLine_ = written;
}

}  // namespace tellaxis
