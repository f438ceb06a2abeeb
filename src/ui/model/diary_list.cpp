// Diary list: rows, words and questions.
#include "ui/model/diary_list.h"

#include <algorithm>
#include <utility>

#include "check/words.h"

namespace tellaxis::ui {

namespace {

/// "10:05:42" of "2026-11-21T10:05:42.123".
std::string timeOfDay(std::string_view time) {
  constexpr std::size_t start = 11;
  constexpr std::size_t length = 8;
  return std::string(time.size() < start ? time : time.substr(start, length));
}

}  // namespace

void DiaryList::load(std::vector<DiaryEntry> entries) {
  entries_ = std::move(entries);
  filter(query_);
}

void DiaryList::filter(const DiaryQuery& query) {
  query_ = query;
  rows_.clear();
  for (std::size_t i = entries_.size(); i > 0; --i)
    if (isWanted(query_, entries_[i - 1])) rows_.push_back(static_cast<std::uint32_t>(i - 1));
}

std::string DiaryList::cell(std::size_t row, Column column) const {
  const DiaryEntry& entry = at(row);
  switch (column) {
    case time: return timeOfDay(entry.time);
    case device: return std::string(namesOf(entry.device).italian);
    case outcome: return std::string(namesOf(entry.outcome).italian);
    case job: return entry.job;
    case reason: return entry.reason;
    case id: return entry.id;
  }
  return {};
}

bool DiaryList::isProblem(std::size_t row) const { return namesOf(at(row).outcome).problem; }

std::string DiaryList::summary() const {
  std::size_t problems = 0;
  for (std::size_t row = 0; row < size(); ++row) problems += isProblem(row) ? 1 : 0;
  return counted(size(), "lavoro", "lavori") + ", " + counted(problems, "problema", "problemi");
}

std::optional<std::size_t> DiaryList::rowOf(std::string_view wanted) const {
  for (std::size_t row = 0; row < size(); ++row)
    if (at(row).id == wanted) return row;
  return std::nullopt;
}

std::string detailsOf(const DiaryEntry& entry) {
  std::string text = entry.job + " - " + std::string(namesOf(entry.device).italian) + ", " +
                     std::string(namesOf(entry.outcome).italian);
  text += "\nAlle " + timeOfDay(entry.time) + ", " + counted(static_cast<std::size_t>(entry.bytes), "byte", "byte") +
          ", " + std::to_string(entry.ms) + " ms";
  if (entry.count > 1) text += ", " + std::to_string(entry.count) + " tentativi";
  text += " (" + entry.id + ")";
  if (!entry.reason.empty()) text += "\nMotivo: " + entry.reason;
  return text;
}

bool canReprint(const DiaryEntry& entry) { return !entry.copy.empty(); }

ReprintQuestion questionFor(const DiaryEntry& entry) {
  ReprintQuestion question{.text = "Rimettere in coda " + entry.job + " (" +
                                   std::string(namesOf(entry.device).italian) + ", " + timeOfDay(entry.time) + ")?",
                           .consent = neededConsent(entry)};
  question.warning = question.consent.fiscal;
  if (question.consent.evenIfIssued)
    question.text =
        "ATTENZIONE: questo lavoro \xE8 uno scontrino fiscale che \xE8 gi\xE0 uscito, o pu\xF2 essere uscito.\n"
        "Stamparlo di nuovo emette un secondo scontrino per la stessa vendita.\n\n" +
        question.text;
  else if (question.consent.fiscal)
    question.text =
        "ATTENZIONE: questo lavoro \xE8 uno scontrino fiscale. Rimesso in coda viene emesso.\n\n" + question.text;
  return question;
}

std::string dayForReader(Day day) {
  const std::string text = textOf(day);
  return text.substr(8, 2) + "/" + text.substr(5, 2) + "/" + text.substr(0, 4);
}

}  // namespace tellaxis::ui
