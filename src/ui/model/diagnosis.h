// Diagnosis: the findings of the check as rows of a table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "check/finding.h"

namespace tellaxis::ui {

/// Texts in code page 1252.
class Diagnosis {
 public:
  enum Column : std::uint8_t { device, state, text, remedy };

  void show(std::vector<Finding> findings) { findings_ = std::move(findings); }

  std::size_t size() const { return findings_.size(); }
  const Finding& at(std::size_t row) const { return findings_[row]; }
  std::string cell(std::size_t row, Column column) const;

  /// The finding at length: its text, and what to do.
  std::string details(std::size_t row) const;

  /// "2 errori, 1 avviso."
  std::string summary() const;

  /// The row to look at first: the first error, else the first warning, else the first row.
  std::optional<std::size_t> worst() const;

 private:
  std::vector<Finding> findings_;
};

}  // namespace tellaxis::ui
