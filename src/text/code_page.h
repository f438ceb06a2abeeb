// Code page: conversion between code page 1252, which all text inside the program is in, and Unicode.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tellaxis {

/// The Unicode character of one byte; the five undefined bytes stand for the control characters of the same number.
char32_t unicodeOf(char byte);

std::string utf8FromCodePage(std::string_view text);

/// Appends the UTF-8 form of `character` to `text`.
void appendUtf8(std::string& text, char32_t character);

/// True for well-formed UTF-8.
bool isUtf8(std::string_view text);

/// Nothing when `text` is not UTF-8 or has a character that the code page lacks.
std::optional<std::string> codePageFromUtf8(std::string_view text);

/// As above with "?" for each character that the code page lacks and each byte that is not UTF-8.
std::string nearestCodePage(std::string_view text);

}  // namespace tellaxis
