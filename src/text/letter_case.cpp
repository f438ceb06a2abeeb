// Letter case: a table of 256 letters.
#include "text/letter_case.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tellaxis {

namespace {

constexpr std::size_t numberOf(char c) { return static_cast<std::uint8_t>(c); }

constexpr std::array<char, 256> makeTable() {
  std::array<char, 256> table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const bool latin = i >= 'a' && i <= 'z';
    const bool accented = i >= 0xE0 && i <= 0xFE && i != 0xF7;
    const bool fromLowerHalf = i == 0x9A || i == 0x9C || i == 0x9E;
    const std::size_t upper = latin || accented ? i - 0x20 : fromLowerHalf ? i - 0x10 : i == 0xFF ? 0x9F : i;
    table.at(i) = static_cast<char>(upper);
  }
  return table;
}

constexpr std::array<char, 256> upperCaseLetters = makeTable();

constexpr char capital(char letter) { return upperCaseLetters[numberOf(letter)]; }

bool areSameLetter(char a, char b) { return capital(a) == capital(b); }

}  // namespace

char upperCase(char letter) { return capital(letter); }

std::string upperCase(std::string_view text) {
  std::string result(text);
  for (char& letter : result) letter = capital(letter);
  return result;
}

bool equalIgnoringCase(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right, areSameLetter);
}

bool lessIgnoringCase(std::string_view left, std::string_view right) {
  const auto [ofLeft, ofRight] = std::ranges::mismatch(left, right, areSameLetter);
  if (ofLeft != left.end() && ofRight != right.end()) return numberOf(capital(*ofLeft)) < numberOf(capital(*ofRight));
  if (ofLeft == left.end() && ofRight == right.end()) return left < right;
  return ofLeft == left.end();
}

bool equalIgnoringAsciiCase(std::string_view left, std::string_view right) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char a, char b) { return lower(a) == lower(b); });
}

}  // namespace tellaxis
