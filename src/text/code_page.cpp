// Code page: conversion between code page 1252 and Unicode.
#include "text/code_page.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace tellaxis {

namespace {

/// Characters of the bytes 80 to 9F; all others have the number of their byte.
constexpr std::array<char16_t, 32> upperControls = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::optional<char> byteOf(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<char>(character);
  const auto* found = std::find(upperControls.begin(), upperControls.end(), character);
  if (found == upperControls.end()) return std::nullopt;
  return static_cast<char>(0x80 + (found - upperControls.begin()));
}

/// Without an early end, so that many letters are taken at once.
bool isAscii(std::string_view text) {
  unsigned bits = 0;
  for (const char c : text) bits |= static_cast<std::uint8_t>(c);
  return bits < 0x80;
}

/// One character taken from the front of UTF-8 text; a length of 0 where it is none.
struct Decoded {
  char32_t character = 0;
  std::size_t length = 0;
};

Decoded decodeFront(std::string_view text) {
  const auto byteAt = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t lead = byteAt(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 && lead <= 0xF4 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
  if (length == 0 || lead > 0xF4 || text.size() < length) return {};
  char32_t character = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(i) & 0xC0U) != 0x80) return {};
    character = (character << 6U) | (byteAt(i) & 0x3FU);
  }
  const bool overlong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (overlong || surrogate || character > 0x10FFFF) return {};
  return {character, length};
}

}  // namespace

char32_t unicodeOf(char byte) {
  const auto number = static_cast<std::uint8_t>(byte);
  return number >= 0x80 && number <= 0x9F ? upperControls[number - 0x80U] : number;
}

void appendUtf8(std::string& text, char32_t character) {
  const auto append = [&](char32_t bits) { text += static_cast<char>(bits); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0U | (character >> 6U));
    append(0x80U | (character & 0x3FU));
  } else {
    append(0xE0U | (character >> 12U));
    append(0x80U | ((character >> 6U) & 0x3FU));
    append(0x80U | (character & 0x3FU));
  }
}

std::string utf8FromCodePage(std::string_view text) {
  if (isAscii(text)) return std::string(text);
  std::string utf8;
  utf8.reserve(text.size());
  for (const char byte : text) appendUtf8(utf8, unicodeOf(byte));
  return utf8;
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = decodeFront(text).length;
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::optional<std::string> codePageFromUtf8(std::string_view text) {
  if (isAscii(text)) return std::string(text);
  std::string bytes;
  while (!text.empty()) {
    const Decoded front = decodeFront(text);
    const auto byte = front.length == 0 ? std::nullopt : byteOf(front.character);
    if (!byte) return std::nullopt;
    bytes += *byte;
    text.remove_prefix(front.length);
  }
  return bytes;
}

std::string nearestCodePage(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const Decoded front = decodeFront(text);
    bytes += front.length == 0 ? '?' : byteOf(front.character).value_or('?');
    text.remove_prefix(std::max<std::size_t>(front.length, 1));
  }
  return bytes;
}

}  // namespace tellaxis
