// Upper case: the letters of code page 1252.
#include "core/upper_case.h"

#include <algorithm>

namespace tellaxis {

namespace {

/// Small letters in a row and how far below them their capitals are.
struct Letters {
  unsigned char first;
  unsigned char last;
  unsigned char distance;
};

constexpr Letters smallLetters[] = {
    {.first = 'a', .last = 'z', .distance = 0x20},
    {.first = 0x9A, .last = 0x9A, .distance = 0x10},  // s, oe and z with their marks
    {.first = 0x9C, .last = 0x9C, .distance = 0x10},
    {.first = 0x9E, .last = 0x9E, .distance = 0x10},
    {.first = 0xE0, .last = 0xF6, .distance = 0x20},  // accented letters; F7 is the division sign
    {.first = 0xF8, .last = 0xFE, .distance = 0x20},
    {.first = 0xFF, .last = 0xFF, .distance = 0x60},
};

char upperCase(char letter) {
  const auto byte = static_cast<unsigned char>(letter);
  for (const Letters& letters : smallLetters)
    if (byte >= letters.first && byte <= letters.last) return static_cast<char>(byte - letters.distance);
  return letter;
}

}  // namespace

std::string upperCase(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](char letter) { return upperCase(letter); });
  return result;
}

}  // namespace tellaxis
