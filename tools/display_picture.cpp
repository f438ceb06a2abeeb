// Display picture: the commands of all families, read byte by byte.
#include "display_picture.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "text/code_page.h"

namespace tellaxis::tools {

namespace {

constexpr char escape = '\033';

/// Commands that clear a line and write it, up to CR.
struct LineCommand {
  std::string_view bytes;
  std::size_t row;
};

constexpr LineCommand lineCommands[] = {
    {"\033QA", 0}, {"\033QB", 1}, {"\033F A", 0}, {"\033F B", 1}, {"\033A", 0}, {"\033B", 1},
};

constexpr std::string_view positionStart = "\033[";
constexpr char positionEnd = 'H';

/// A number from 1 to `last`, counted from 0.
std::optional<std::size_t> placeFrom(std::string_view digits, std::size_t last) {
  std::size_t place = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), place);
  if (error != std::errc{} || end != digits.data() + digits.size() || place < 1 || place > last) return std::nullopt;
  return place - 1;
}

bool mayBecomeCommand(std::string_view beginning) {
  if (beginning.starts_with(positionStart))
    return beginning.find_first_not_of("0123456789;", positionStart.size()) == std::string_view::npos &&
           beginning.size() < 10;
  return positionStart.starts_with(beginning) || std::ranges::any_of(lineCommands, [&](const LineCommand& command) {
           return command.bytes.starts_with(beginning);
         });
}

}  // namespace

void DisplayPicture::receive(std::string_view bytes) {
  for (const char byte : bytes) receive(byte);
}

void DisplayPicture::receive(char byte) {
  if (!command_.empty() || byte == escape) return receiveCommand(byte);
  if (byte == '\r') {
    writing_ = Writing::wholeDisplay;
    cursor_ = 0;
    return;
  }
  if (byte != '\n') put(byte);
}

void DisplayPicture::receiveCommand(char byte) {
  if (byte == escape && !command_.empty()) {
    ++unknownCommands_;
    command_.clear();
  }
  command_ += byte;
  if (moveCursor() || startLine()) return endCommand();
  if (mayBecomeCommand(command_)) return;
  ++unknownCommands_;
  command_.clear();
}

/// ESC [ row ; column H
bool DisplayPicture::moveCursor() {
  if (!command_.starts_with(positionStart) || !command_.ends_with(positionEnd)) return false;
  const std::string_view numbers =
      std::string_view(command_).substr(positionStart.size(), command_.size() - positionStart.size() - 1);
  const std::size_t semicolon = numbers.find(';');
  if (semicolon == std::string_view::npos) return false;
  const auto row = placeFrom(numbers.substr(0, semicolon), places / width);
  const auto column = placeFrom(numbers.substr(semicolon + 1), width);
  if (!row || !column) return false;
  writing_ = Writing::atPosition;
  cursor_ = *row * width + *column;
  lineEnd_ = (*row + 1) * width;
  return true;
}

bool DisplayPicture::startLine() {
  const auto* command = std::ranges::find(lineCommands, std::string_view(command_), &LineCommand::bytes);
  if (command == std::end(lineCommands)) return false;
  writing_ = Writing::oneLine;
  cursor_ = command->row * width;
  lineEnd_ = cursor_ + width;
  shown_.replace(cursor_, width, width, ' ');
  return true;
}

void DisplayPicture::endCommand() {
  command_.clear();
  wide_ = false;
}

void DisplayPicture::put(char character) {
  if (writing_ == Writing::wholeDisplay) {
    if (cursor_ % places == 0) shown_.assign(places, ' ');
    shown_[cursor_++ % places] = character;
    wide_ = true;
    return;
  }
  // A full line takes no more.
  if (cursor_ < lineEnd_) shown_[cursor_++] = character;
}

void DisplayPicture::pause() {
  if (writing_ == Writing::wholeDisplay) cursor_ = 0;
}

std::vector<std::string> DisplayPicture::lines() const {
  if (wide_) return {shown_};
  return {shown_.substr(0, width), shown_.substr(width)};
}

std::string framed(const std::vector<std::string>& lines) {
  std::string edge;
  for (std::size_t i = 0; i < lines.front().size(); ++i) edge += "\u2500";
  std::string text = "\u250C" + edge + "\u2510\n";
  for (const std::string& line : lines) text += "\u2502" + utf8FromCodePage(line) + "\u2502\n";
  return text + "\u2514" + edge + "\u2518\n";
}

}  // namespace tellaxis::tools
