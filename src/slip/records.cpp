// Records: finding where a record ends.
#include "slip/records.h"

#include <algorithm>

#include "slip/require.h"

namespace tellaxis {

bool Records::beginLine() {
  const auto line = lines_.next();
  require(!lines_.failed(), "lettura del file");
  if (!line) return false;
  rest_ = *line;
  inLine_ = true;
  noClosingQuote_ = false;
  return true;
}

/// Goes on past the record that ends at `end` of the rest: at a comma or at the line's end. A comma that is the file's
/// last character is followed by no record.
void Records::endRecord(std::size_t end) {
  inLine_ = end < rest_.size();
  rest_.remove_prefix(inLine_ ? end + 1 : end);
  if (rest_.empty() && !lines_.ended()) inLine_ = false;
}

/// Where the quote stands that encloses the record which begins with one.
std::optional<std::size_t> Records::closingQuote() {
  if (noClosingQuote_) return std::nullopt;
  for (std::size_t quote = rest_.find('"', 1); quote != std::string_view::npos; quote = rest_.find('"', quote + 1)) {
    const std::size_t behind = rest_.find_first_not_of(' ', quote + 1);
    if (behind == std::string_view::npos || rest_[behind] == ',') return quote;
  }
  noClosingQuote_ = true;
  return std::nullopt;
}

std::optional<std::string_view> Records::next() {
  if (!inLine_ && !beginLine()) return std::nullopt;
  rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
  if (rest_.starts_with('"')) {
    if (const auto quote = closingQuote()) {
      const std::string_view record = rest_.substr(1, *quote - 1);
      endRecord(std::min(rest_.find(',', *quote), rest_.size()));
      return record;
    }
  }
  const std::string_view record = rest_.substr(0, rest_.find(','));
  endRecord(record.size());
  return record;
}

}  // namespace tellaxis
