// Text lines: finding the ends of lines.
#include "core/input/text_lines.h"

namespace tellaxis {

std::optional<std::string_view> TextLines::next() {
  line_.clear();
  bool any = false;
  ended_ = false;
  for (std::string_view rest = bytes_.rest(); !rest.empty(); rest = bytes_.rest()) {
    if (std::exchange(afterCarriageReturn_, false) && rest.front() == '\n') {
      bytes_.take(1);
      continue;
    }
    any = true;
    const std::size_t end = rest.find_first_of("\r\n");
    line_.append(rest.substr(0, end));
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

}  // namespace tellaxis
