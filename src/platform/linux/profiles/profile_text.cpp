// Profile text: the bytes of an INI file, searched and edited with the meaning of Windows' private-profile operations.
#include "platform/linux/profiles/profile_text.h"

#include <algorithm>
#include <cstring>

#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

constexpr std::string_view lineEnd = "\r\n";

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view withoutLeadingBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  return text;
}

std::string_view trimmed(std::string_view text) {
  text = withoutLeadingBlanks(text);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view unquoted(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == text.back() && (text.front() == '"' || text.front() == '\'');
  return quoted ? text.substr(1, text.size() - 2) : text;
}

/// One line: `text` without its end, and where it lies in the file, its end included.
struct Line {
  std::string_view text;
  std::size_t begin = 0;
  std::size_t end = 0;
};

/// Hands out the lines of a text; CR LF, LF and CR end a line.
class Lines {
 public:
  explicit Lines(std::string_view text) : text_(text) {}

  bool next(Line& line) {
    if (position_ == text_.size()) return false;
    line.begin = position_;
    const std::size_t feed = nextFeed();
    const std::size_t stop = find('\r', position_, feed);
    line.text = text_.substr(position_, stop - position_);
    const bool isPair = stop + 1 < text_.size() && text_[stop] == '\r' && text_[stop + 1] == '\n';
    position_ = std::min(text_.size(), stop + (isPair ? 2 : 1));
    line.end = position_;
    return true;
  }

 private:
  /// Position of `c` in the bytes `begin` to `end`, or `end`.
  std::size_t find(char c, std::size_t begin, std::size_t end) const {
    const void* found = begin == end ? nullptr : std::memchr(text_.data() + begin, c, end - begin);
    return found == nullptr ? end : static_cast<std::size_t>(static_cast<const char*>(found) - text_.data());
  }

  /// The next LF, kept until it is passed, so that a text full of lone CRs is not searched again for every line.
  std::size_t nextFeed() {
    if (feed_ < position_ || !searched_) feed_ = find('\n', position_, text_.size());
    searched_ = true;
    return feed_;
  }

  std::string_view text_;
  std::size_t position_ = 0;
  std::size_t feed_ = 0;
  bool searched_ = false;
};

/// The name in a line such as "[Name]"; it ends at the first "]".
std::optional<std::string_view> sectionName(std::string_view line) {
  line = withoutLeadingBlanks(line);
  if (!line.starts_with('[')) return std::nullopt;
  const std::size_t close = line.find(']');
  if (close == std::string_view::npos) return std::nullopt;
  return trimmed(line.substr(1, close - 1));
}

struct KeyLine {
  std::string_view name;
  std::string_view afterEquals;

  std::string_view value() const { return trimmed(afterEquals); }
};

/// The two sides of a line such as "name = value". A comment and a line without "=" are no key.
std::optional<KeyLine> keyLine(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return std::nullopt;
  const std::string_view name = trimmed(line.substr(0, equals));
  if (name.starts_with(';')) return std::nullopt;
  return KeyLine{name, line.substr(equals + 1)};
}

/// A key with the line that holds it.
struct FoundKey {
  KeyLine content;
  Line line;
};

/// The first section of a name, and in it the first key of a name.
struct Place {
  std::size_t begin = 0;   ///< of its header
  std::size_t end = 0;     ///< where the next header or nothing follows; undefined when the key was found
  std::size_t newKey = 0;  ///< where a key is added: behind the last key, or behind the header
  std::optional<FoundKey> key;
};

bool findSection(Lines& lines, std::string_view section, Line& header) {
  while (lines.next(header))
    if (const auto name = sectionName(header.text); name && equalIgnoringAsciiCase(*name, section)) return true;
  return false;
}

std::optional<Place> findPlace(std::string_view text, std::string_view section, std::optional<std::string_view> key) {
  Lines lines(text);
  Line line;
  if (!findSection(lines, trimmed(section), line)) return std::nullopt;
  Place place{.begin = line.begin, .end = text.size(), .newKey = line.end, .key = {}};
  while (lines.next(line)) {
    if (sectionName(line.text)) {
      place.end = line.begin;
      break;
    }
    const auto content = keyLine(line.text);
    if (!content) continue;
    place.newKey = line.end;
    if (key && equalIgnoringAsciiCase(content->name, *key)) {
      place.key = FoundKey{*content, line};
      break;
    }
  }
  return place;
}

/// A line end for the byte before `position` where that is the last of an unended line.
std::string_view missingEnd(std::string_view text, std::size_t position) {
  const bool ended = position == 0 || text[position - 1] == '\n' || text[position - 1] == '\r';
  return ended ? std::string_view() : lineEnd;
}

template <typename... Parts>
std::string joined(Parts... parts) {
  std::string whole;
  whole.reserve((std::string_view(parts).size() + ...));
  (whole.append(parts), ...);
  return whole;
}

}  // namespace

std::optional<std::string_view> findValue(std::string_view text, std::string_view section, std::string_view key) {
  const auto place = findPlace(text, section, trimmed(key));
  if (!place || !place->key) return std::nullopt;
  return unquoted(place->key->content.value());
}

std::string listSections(std::string_view text) {
  std::string names;
  Lines lines(text);
  for (Line line; lines.next(line);)
    if (const auto name = sectionName(line.text)) names.append(*name).push_back('\0');
  return names;
}

std::string listKeys(std::string_view text, std::string_view section) {
  std::string names;
  Lines lines(text);
  Line line;
  if (!findSection(lines, trimmed(section), line)) return names;
  while (lines.next(line) && !sectionName(line.text))
    if (const auto content = keyLine(line.text)) names.append(content->name).push_back('\0');
  return names;
}

std::optional<TextEdit> editFor(std::string_view text, std::string_view section, std::optional<std::string_view> key,
                                std::optional<std::string_view> value) {
  if (key) key = trimmed(*key);
  const auto place = findPlace(text, section, key);
  if (!key) {
    if (!place) return std::nullopt;
    return TextEdit{place->begin, place->end, {}};
  }
  if (place && place->key) {
    const auto& [content, line] = *place->key;
    if (!value) return TextEdit{line.begin, line.end, {}};
    if (content.value() == trimmed(*value)) return std::nullopt;
    return TextEdit{line.begin, line.end, joined(content.name, "=", *value, lineEnd)};
  }
  if (!value) return std::nullopt;
  const std::size_t at = place ? place->newKey : text.size();
  const std::string assignment = joined(*key, "=", *value, lineEnd);
  if (place) return TextEdit{at, at, joined(missingEnd(text, at), assignment)};
  return TextEdit{at, at, joined(missingEnd(text, at), "[", trimmed(section), "]", lineEnd, assignment)};
}

}  // namespace tellaxis::platform
