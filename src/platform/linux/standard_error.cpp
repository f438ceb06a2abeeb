// Standard error: conversion to one line of UTF-8.
#include "platform/linux/standard_error.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "platform/virtual/code_page.h"

namespace tellaxis::platform {

namespace {

std::string onOneLine(std::string_view text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    const bool blank = c == '\r' || c == '\n' || c == '\t';
    const bool control = (c >= 0 && c < ' ') || c == '\x7F';
    line += blank ? ' ' : control ? '?' : c;
  }
  return line;
}

}  // namespace

void writeErrorLine(std::string_view text) {
  const std::string line = utf8FromCodePage(onOneLine(text)) + '\n';
  std::string_view rest = line;
  while (!rest.empty()) {
    const ssize_t written = ::write(STDERR_FILENO, rest.data(), rest.size());
    if (written < 0 && errno != EINTR) return;
    rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
  }
}

}  // namespace tellaxis::platform
