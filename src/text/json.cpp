// JSON: escapes on the way out, and a small reader for what was written here.
#include "text/json.h"

#include <algorithm>
#include <optional>

#include "text/code_page.h"

namespace tellaxis {

namespace {

constexpr std::string_view escaped = "\"\\\b\f\n\r\t";
constexpr std::string_view escapeLetters = "\"\\bfnrt";

bool isPlain(char byte) { return byte >= 0x20 && byte < 0x7F && byte != '"' && byte != '\\'; }

int digitOf(char letter) {
  if (letter >= '0' && letter <= '9') return letter - '0';
  if (letter >= 'a' && letter <= 'f') return letter - 'a' + 10;
  if (letter >= 'A' && letter <= 'F') return letter - 'A' + 10;
  return -1;
}

/// Walks through the text of one object.
class Reader {
 public:
  explicit Reader(std::string_view json) : rest_(json) {}

  bool object(const JsonMember& member) {
    if (!sign('{')) return false;
    if (sign('}')) return atEnd();
    do {
      if (!text(name_) || !sign(':') || !value(value_)) return false;
      member(name_, value_);
    } while (sign(','));
    return sign('}') && atEnd();
  }

 private:
  void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size())); }

  bool atEnd() {
    skipBlanks();
    return rest_.empty();
  }

  bool nextIs(char wanted) {
    if (!rest_.starts_with(wanted)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  /// As above, blanks before it aside.
  bool sign(char wanted) {
    skipBlanks();
    return nextIs(wanted);
  }

  bool value(std::string& into) {
    skipBlanks();
    if (rest_.starts_with('"')) return text(into);
    const std::size_t length = std::min(rest_.find_first_of(",}{[]\" \t\r\n"), rest_.size());
    into = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return length > 0;
  }

  bool text(std::string& into) {
    if (!sign('"')) return false;
    std::size_t plain = 0;
    while (plain < rest_.size() && isPlain(rest_[plain])) ++plain;
    into = rest_.substr(0, plain);
    rest_.remove_prefix(plain);
    if (nextIs('"')) return true;
    return textWithMore(into);
  }

  /// The rest of a text from its first character on that does not stand for itself.
  bool textWithMore(std::string& into) {
    std::string utf8;
    while (!rest_.empty() && rest_.front() != '"') {
      if (rest_.front() != '\\') {
        utf8 += rest_.front();
        rest_.remove_prefix(1);
      } else if (!escape(utf8)) {
        return false;
      }
    }
    into += nearestCodePage(utf8);
    return nextIs('"');
  }

  bool escape(std::string& utf8) {
    if (rest_.size() < 2) return false;
    const char letter = rest_[1];
    rest_.remove_prefix(2);
    if (letter == 'u') return number(utf8);
    const std::size_t known = escapeLetters.find(letter);
    if (known == std::string_view::npos && letter != '/') return false;
    utf8 += letter == '/' ? letter : escaped[known];
    return true;
  }

  bool number(std::string& utf8) {
    constexpr std::size_t digits = 4;
    if (rest_.size() < digits) return false;
    unsigned number = 0;
    for (const char letter : rest_.substr(0, digits)) {
      const int digit = digitOf(letter);
      if (digit < 0) return false;
      number = number * 16 + static_cast<unsigned>(digit);
    }
    rest_.remove_prefix(digits);
    appendUtf8(utf8, number);
    return true;
  }

  std::string_view rest_;
  std::string name_;
  std::string value_;
};

}  // namespace

void appendJsonText(std::string& json, std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  json += '"';
  for (const char byte : text) {
    const auto number = static_cast<unsigned char>(byte);
    if (const std::size_t known = escaped.find(byte); known != std::string_view::npos) {
      json += '\\';
      json += escapeLetters[known];
    } else if (number < 0x20) {
      json += "\\u00";
      json += digits[number >> 4U];
      json += digits[number & 15U];
    } else {
      appendUtf8(json, unicodeOf(byte));
    }
  }
  json += '"';
}

JsonObject& JsonObject::add(std::string_view name, std::string_view text) {
  addName(name);
  appendJsonText(json_, text);
  return *this;
}

JsonObject& JsonObject::add(std::string_view name, std::int64_t number) {
  addName(name);
  json_ += std::to_string(number);
  return *this;
}

void JsonObject::addName(std::string_view name) {
  if (json_.size() > 1) json_ += ',';
  appendJsonText(json_, name);
  json_ += ':';
}

bool readJsonObject(std::string_view json, const JsonMember& member) { return Reader(json).object(member); }

}  // namespace tellaxis
