// Text lines: finding the ends of lines.
#include "core/input/text_lines.h"

#include <algorithm>

#include "platform/trace.h"

namespace tellaxis {

std::optional<std::string_view> TextLines::next() {
  line_.clear();
  bool any = false;
  ended_ = false;
  tooLong_ = false;
  for (std::string_view rest = bytes_.rest(); !rest.empty(); rest = bytes_.rest()) {
    if (std::exchange(afterCarriageReturn_, false) && rest.front() == '\n') {
      bytes_.take(1);
      continue;
    }
    any = true;
    // What is dropped may be gigabytes: looking for each sign by itself is several times as fast there.
    const std::size_t end = tooLong_ ? std::min(rest.find('\r'), rest.find('\n')) : rest.find_first_of("\r\n");
    keep(rest.substr(0, end));
    if (end != std::string_view::npos) {
      afterCarriageReturn_ = rest[end] == '\r';
      bytes_.take(end + 1);
      ended_ = true;
      return line_;
    }
    bytes_.take(rest.size());
  }
  if (!any || failed()) return std::nullopt;
  return line_;
}

/// Adds what still fits of the next piece of a line.
void TextLines::keep(std::string_view piece) {
  const std::string_view fitting = piece.substr(0, longest - line_.size());
  line_.append(fitting);
  if (fitting.size() == piece.size() || std::exchange(tooLong_, true)) return;
  if (trace_ != nullptr) trace_->failed("lettura", path_, "riga oltre 1 MB: il resto si perde");
}

}  // namespace tellaxis
