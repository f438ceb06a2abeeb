// ESC/POS decoder: reads receipt-printer commands back and refuses everything that is not exactly one of those known.
#include "escpos_decoder.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace tellaxis::tools {

namespace {

/// A command of fixed length: its bytes, and the values that its one argument may have.
struct ShortCommand {
  std::string_view prefix;
  const char* name;
  int least;
  int greatest;
};

using namespace std::string_view_literals;

constexpr ShortCommand shortCommands[] = {
    {"\x1Bt"sv, "code page", 0, 255}, {"\x1B\x63\x30"sv, "paper", 1, 4}, {"\x1BM"sv, "face", 0, 1},
    {"\x1B\x45"sv, "bold", 0, 1},     {"\x1Br"sv, "red", 0, 1},          {"\x1B!"sv, "mode", 0, 0x39},
    {"\x1B\x61"sv, "align", 0, 2},    {"\x1BJ"sv, "feed", 1, 255},       {"\x1B\x33"sv, "spacing", 1, 255},
    {"\x1D!"sv, "scale", 0, 0x77},    {"\x1Dh"sv, "bar height", 1, 255}, {"\x1Dw"sv, "bar width", 2, 6},
    {"\x1DH"sv, "bar digits", 0, 3},  {"\x1DV\x42"sv, "cut", 0, 255},
};

bool isUndefined(unsigned char byte) {
  return byte == 0x7F || byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 || byte == 0x9D;
}

class Decoder {
 public:
  explicit Decoder(std::string_view bytes) : bytes_(bytes) {}

  Decoded decode() {
    if (!take("\x1B@"sv) || !bytes_.substr(position_).starts_with("\x1Bt"sv)) fail("does not begin with a reset");
    while (!decoded_.error && position_ < bytes_.size()) next();
    if (!decoded_.error && !line_.empty()) fail("text without the end of its line");
    return std::move(decoded_);
  }

 private:
  void next() {
    const auto byte = static_cast<unsigned char>(bytes_[position_]);
    if (byte == '\n' || byte == '\f') return endLine(byte);
    if (byte >= ' ') return text(byte);
    if (!line_.empty()) return fail("command inside a line of text");
    if (take("\x1B\x32"sv)) return event("normal spacing");
    if (take("\x1B$"sv)) return position();
    if (take("\x1B*"sv)) return columns();
    if (take("\x1Dv0"sv)) return raster();
    if (take("\x1Dk"sv)) return barCode();
    for (const ShortCommand& command : shortCommands)
      if (take(command.prefix)) return shortCommand(command);
    fail("unknown command");
  }

  void endLine(unsigned char byte) {
    ++position_;
    if (byte == '\f') {
      if (!line_.empty()) return fail("form feed inside a line");
      return event("eject");
    }
    event(line_.empty() ? "line" : "text " + line_);
    line_.clear();
  }

  void text(unsigned char byte) {
    if (isUndefined(byte)) return fail("undefined character");
    line_ += bytes_[position_++];
  }

  void shortCommand(const ShortCommand& command) {
    const auto value = number(1);
    if (!value || *value < command.least || *value > command.greatest) return fail(command.name);
    event(std::string(command.name) + " " + std::to_string(*value));
  }

  void position() {
    const auto dots = number(2);
    if (!dots) return fail("position");
    event("left " + std::to_string(*dots));
  }

  void columns() {
    const auto mode = number(1);
    const auto width = number(2);
    if (!mode || *mode != 0 || !width || *width < 1 || *width > 2047 || !skip(*width)) return fail("columns");
    event("columns " + std::to_string(*width));
  }

  void raster() {
    const auto mode = number(1);
    const auto rowBytes = number(2);
    const auto rows = number(2);
    if (!mode || *mode != 0 || !rowBytes || *rowBytes < 1 || !rows || *rows < 1 || *rows > 255 ||
        !skip(*rowBytes * *rows))
      return fail("raster");
    event("raster " + std::to_string(*rowBytes) + "x" + std::to_string(*rows));
  }

  void barCode() {
    const auto kind = number(1);
    const auto length = number(1);
    if (!kind || *kind != 0x43 || !length || *length != 13) return fail("bar code");
    const std::string digits(bytes_.substr(position_, 13));
    if (!skip(13)) return fail("bar code");
    int sum = 0;
    for (std::size_t i = 0; i < digits.size(); ++i) {
      if (digits[i] < '0' || digits[i] > '9') return fail("bar code");
      sum += (digits[i] - '0') * (i % 2 == 0 ? 1 : 3);
    }
    if (sum % 10 != 0) return fail("check digit");
    event("ean13 " + digits);
  }

  bool take(std::string_view prefix) {
    if (!bytes_.substr(position_).starts_with(prefix)) return false;
    position_ += prefix.size();
    return true;
  }

  std::optional<int> number(int length) {
    int value = 0;
    for (int i = 0; i < length; ++i) {
      if (position_ >= bytes_.size()) return std::nullopt;
      value |= static_cast<unsigned char>(bytes_[position_++]) << (8 * i);
    }
    return value;
  }

  bool skip(int length) {
    if (bytes_.size() - position_ < static_cast<std::size_t>(length)) return false;
    position_ += static_cast<std::size_t>(length);
    return true;
  }

  void event(std::string event) { decoded_.events.push_back(std::move(event)); }
  void fail(const std::string& reason) { decoded_.error = reason + " near byte " + std::to_string(position_); }

  std::string_view bytes_;
  std::size_t position_ = 0;
  std::string line_;
  Decoded decoded_;
};

}  // namespace

Decoded decodeEscPos(std::string_view bytes) { return Decoder(bytes).decode(); }

}  // namespace tellaxis::tools
