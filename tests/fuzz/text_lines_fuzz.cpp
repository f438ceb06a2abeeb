// Text lines fuzzing: any bytes as a text file, read in pieces of any size, with its first line repeated up to the
// limit.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/input/text_lines.h"

namespace {

using namespace tellaxis;

void demand(bool condition) {
  if (!condition) std::abort();
}

/// A long beginning without a line's end, then a text, handed out in pieces.
class PiecedText : public platform::InputFile {
 public:
  PiecedText(std::size_t beginning, std::string_view text, std::size_t piece)
      : beginning_(beginning), text_(text), piece_(piece) {}

  std::optional<std::size_t> read(std::span<char> buffer) override {
    if (const std::size_t size = std::min(buffer.size(), beginning_); size > 0) {
      std::memset(buffer.data(), 'x', size);
      beginning_ -= size;
      return size;
    }
    const std::size_t size = std::min({buffer.size(), piece_, text_.size()});
    if (size > 0) std::memcpy(buffer.data(), text_.data(), size);
    text_.remove_prefix(size);
    return size;
  }

 private:
  std::size_t beginning_;
  std::string_view text_;
  std::size_t piece_;
};

std::vector<std::string> linesOf(std::size_t beginning, std::string_view text, std::size_t piece) {
  TextLines lines(std::make_unique<PiecedText>(beginning, text, piece));
  std::vector<std::string> all;
  while (const auto line = lines.next()) {
    demand(line->size() <= TextLines::longest);
    demand(line->find_first_of("\r\n") == std::string_view::npos);
    all.emplace_back(*line);
  }
  demand(!lines.failed());
  return all;
}

/// The same by another way: the ends made all alike, then cut there.
std::vector<std::string> cut(std::string_view text) {
  std::vector<std::string> all;
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = std::min(text.find_first_of("\r\n", from), text.size());
    all.emplace_back(text.substr(from, end - from));
    from = end + (text.substr(std::min(end, text.size()), 2) == "\r\n" ? 2 : 1);
  }
  return all;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  const auto expected = cut(text);
  demand(linesOf(0, text, text.size() + 1) == expected);
  demand(linesOf(0, text, 1) == expected);
  demand(linesOf(0, text, data[0] % 7 + 2) == expected);
  // Few inputs also behind a beginning that is nearly as long as a line may be, or a little longer: that takes its
  // time.
  if (data[0] != 0 || size % 64 != 63) return 0;
  const std::size_t beginning = TextLines::longest - 8 + data[1] % 16;
  const auto lines = linesOf(beginning, text, 5);
  demand(lines.size() == std::max<std::size_t>(expected.size(), 1));
  const std::string first = expected.empty() ? "" : expected.front();
  const std::string whole = (std::string(beginning, 'x') + first).substr(0, TextLines::longest);
  demand(lines.front() == whole);
  demand(std::equal(lines.begin() + 1, lines.end(), expected.begin() + (expected.empty() ? 0 : 1), expected.end()));
  return 0;
}
