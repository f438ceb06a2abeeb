// Diagnosis: cells and details.
#include "ui/model/diagnosis.h"

#include <algorithm>

#include "check/report.h"

namespace tellaxis::ui {

std::string Diagnosis::cell(std::size_t row, Column column) const {
  const Finding& finding = findings_[row];
  switch (column) {
    case device: return std::string(titleOf(finding.device));
    case state: return std::string(wordOf(finding.level));
    case text: return finding.text;
    case remedy: return std::string(finding.remedy);
  }
  return {};
}

std::string Diagnosis::details(std::size_t row) const {
  const Finding& finding = findings_[row];
  std::string words = cell(row, device) + ": " + cell(row, state) + "\n" + finding.text;
  if (!finding.remedy.empty()) words.append("\nRimedio: ").append(finding.remedy);
  if (finding.level >= Level::warning) words.append("\n[").append(finding.code).append("]");
  return words;
}

std::string Diagnosis::summary() const { return summaryOf(findings_); }

std::optional<std::size_t> Diagnosis::worst() const {
  const auto found = std::ranges::max_element(findings_, {}, &Finding::level);
  if (found == findings_.end()) return std::nullopt;
  if (found->level < Level::warning) return 0;
  return static_cast<std::size_t>(found - findings_.begin());
}

}  // namespace tellaxis::ui
