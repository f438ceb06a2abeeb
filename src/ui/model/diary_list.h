// Diary list: the jobs of one day as rows of a table, the latest first, and what may be done with each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "diary/reader.h"
#include "diary/reprint.h"

namespace tellaxis::ui {

/// What the user is asked before a job is printed again.
struct ReprintQuestion {
  std::string text;
  bool warning = false;    ///< a fiscal receipt may come out twice
  ReprintConsent consent;  ///< that a yes gives
};

/// Texts in code page 1252.
class DiaryList {
 public:
  enum Column : std::uint8_t { time, device, outcome, job, reason, id };

  /// The jobs of a day as the diary has them.
  void load(std::vector<DiaryEntry> entries);

  /// Only these are rows; the days of `query` do not count.
  void filter(const DiaryQuery& query);

  std::size_t size() const { return rows_.size(); }
  const DiaryEntry& at(std::size_t row) const { return entries_[rows_[row]]; }
  std::string cell(std::size_t row, Column column) const;
  bool isProblem(std::size_t row) const;

  /// "3 lavori, 1 problema"
  std::string summary() const;

  std::optional<std::size_t> rowOf(std::string_view wanted) const;

 private:
  std::vector<DiaryEntry> entries_;
  std::vector<std::uint32_t> rows_;  ///< places in `entries_`
  DiaryQuery query_;
};

/// The job at length, a line each: when, where, how it ended, why, how long it took.
std::string detailsOf(const DiaryEntry& entry);

/// Whether the diary has what it takes to print the job again.
bool canReprint(const DiaryEntry& entry);

ReprintQuestion questionFor(const DiaryEntry& entry);

/// "21/11/2026"
std::string dayForReader(Day day);

}  // namespace tellaxis::ui
