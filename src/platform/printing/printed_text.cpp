// Printed text: parting a print statement into lines, and checking the digits of a bar code.
#include "platform/printing/printed_text.h"

#include <algorithm>

#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

constexpr std::size_t tabColumns = 8;
constexpr std::size_t ean13Digits = 13;

bool isUndefined(char byte) {
  const char32_t character = unicodeOf(byte);
  return character >= 0x7F && character < 0xA0;
}

void appendPrintable(std::string& line, char byte) {
  const auto character = static_cast<unsigned char>(byte);
  if (byte == '\t')
    line.append(tabColumns - line.size() % tabColumns, ' ');
  else if (character < ' ')
    line += ' ';
  else
    line += isUndefined(byte) ? '?' : byte;
}

char checkDigit(std::string_view digits) {
  int sum = 0;
  for (std::size_t i = 0; i < ean13Digits - 1; ++i) sum += (digits[i] - '0') * (i % 2 == 0 ? 1 : 3);
  return static_cast<char>('0' + (10 - sum % 10) % 10);
}

}  // namespace

std::vector<std::string> printedLines(std::string_view text) {
  std::vector<std::string> lines(1);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    if (text[i] == '\r' || text[i] == '\n')
      lines.emplace_back();
    else
      appendPrintable(lines.back(), text[i]);
  }
  return lines;
}

std::optional<std::string> ean13(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return std::nullopt;
  std::string digits(text.substr(first, text.find_last_not_of(' ') - first + 1));
  if (!std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; })) return std::nullopt;
  if (digits.size() == ean13Digits - 1) digits += checkDigit(digits);
  if (digits.size() != ean13Digits || digits.back() != checkDigit(digits)) return std::nullopt;
  return digits;
}

}  // namespace tellaxis::platform
