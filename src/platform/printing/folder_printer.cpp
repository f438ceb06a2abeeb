// Folder printer: documents written as files, complete under a temporary name before they get their number.
#include "platform/printing/folder_printer.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t numberDigits = 6;
constexpr std::size_t writeAt = 64 * 1024;

/// The files of a document in the order in which they get their names.
enum FileKind { textFile, pdfFile, pngFile, jsonFile, fileKinds };
constexpr std::array<std::string_view, fileKinds> extensions = {".txt", ".pdf", ".png", ".jsonl"};

fs::path pathOf(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

std::string utf8Of(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

void appendJsonText(std::string& json, std::string_view text) {
  static constexpr std::string_view digits = "0123456789abcdef";
  static constexpr std::string_view escaped = "\"\\\b\f\n\r\t";
  static constexpr std::string_view letters = "\"\\bfnrt";
  json += '"';
  for (const char byte : text) {
    if (const std::size_t index = escaped.find(byte); index != std::string_view::npos) {
      json += '\\';
      json += letters[index];
    } else if (const auto number = static_cast<std::uint8_t>(byte); number < 0x20) {
      json += "\\u00";
      json += digits[number >> 4U];
      json += digits[number & 15U];
    } else {
      appendUtf8(json, unicodeOf(byte));
    }
  }
  json += '"';
}

/// The fewest digits that read back as the same number. (std::to_chars would bring 180 KB of tables into the program.)
void appendNumber(std::string& json, double number) {
  constexpr int mostDigits = 17;
  constexpr double exactIntegers = 1e15;
  if (number == std::trunc(number) && std::abs(number) < exactIntegers) {
    json += std::to_string(static_cast<std::int64_t>(number));
    return;
  }
  std::array<char, 32> text{};
  for (int digits = 1; digits <= mostDigits; ++digits) {
    std::snprintf(text.data(), text.size(), "%.*g", digits, number);
    if (std::strtod(text.data(), nullptr) == number) break;
  }
  json += text.data();
}

void appendCoordinate(std::string& json, std::optional<double> coordinate) {
  if (coordinate)
    appendNumber(json, *coordinate);
  else
    json += "null";
}

void appendColor(std::string& json, Color color) {
  static constexpr std::string_view digits = "0123456789abcdef";
  json += "\"#";
  for (const std::uint8_t part : {color.red, color.green, color.blue}) {
    json += digits[part >> 4U];
    json += digits[part & 15U];
  }
  json += '"';
}

struct JsonWriter {
  std::string& json;

  void operator()(const PrintStatement& print) const {
    json += R"({"op":"print","text":)";
    appendJsonText(json, print.text);
    json += R"(,"font":)";
    appendJsonText(json, print.font);
    json += R"(,"size":)";
    appendNumber(json, print.size);
    json += print.bold ? R"(,"bold":true,"color":)" : R"(,"bold":false,"color":)";
    appendColor(json, print.color);
    json += '}';
  }
  void operator()(const Move& move) const {
    json += R"({"op":"move","x":)";
    appendCoordinate(json, move.x);
    json += R"(,"y":)";
    appendCoordinate(json, move.y);
    json += '}';
  }
  void operator()(const PaintedPicture& painted) const {
    json += R"({"op":"picture","file":)";
    appendJsonText(json, painted.picture.file);
    json += R"(,"x":)";
    appendNumber(json, painted.x);
    json += R"(,"y":)";
    appendNumber(json, painted.y);
    json += R"(,"width":)" + std::to_string(painted.picture.width);
    json += R"(,"height":)" + std::to_string(painted.picture.height) + '}';
  }
};

/// A file that is written as its text grows.
class GrowingFile {
 public:
  explicit GrowingFile(const fs::path& path) : stream_(path, std::ios::binary | std::ios::trunc) {}

  std::string& text() { return text_; }

  /// Writes what came together, once it is much or `all` of it.
  bool write(bool all) {
    if (text_.size() >= writeAt || all) {
      stream_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
      text_.clear();
    }
    return stream_.good();
  }

  bool close() {
    if (!write(true)) return false;
    stream_.close();
    return !stream_.fail();
  }

  bool good() const { return stream_.good(); }

 private:
  std::ofstream stream_;
  std::string text_;
};

/// The number of a document's file ("000012.pdf"); 0 for any other file.
std::uint64_t numberOf(const fs::path& file) {
  const std::string name = utf8Of(file.filename());
  const std::size_t dot = name.find('.');
  if (dot == std::string::npos || dot < numberDigits) return 0;
  if (std::find(extensions.begin(), extensions.end(), std::string_view(name).substr(dot)) == extensions.end()) return 0;
  std::uint32_t number = 0;
  const auto result = std::from_chars(name.data(), name.data() + dot, number);
  return result.ec == std::errc{} && result.ptr == name.data() + dot ? number : 0;
}

std::uint64_t nextNumber(const fs::path& folder, std::error_code& error) {
  std::uint64_t highest = 0;
  for (fs::directory_iterator file(folder, error), end; !error && file != end; file.increment(error))
    highest = std::max(highest, numberOf(file->path()));
  return highest + 1;
}

std::string numbered(std::uint64_t number) {
  const std::string digits = std::to_string(number);
  return std::string(numberDigits - std::min(numberDigits, digits.size()), '0') + digits;
}

/// A name that no other document under way has, in this program or another.
std::string temporaryName() {
  static std::atomic<unsigned> count = 0;
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  return ".documento-" + std::to_string(now) + "-" + std::to_string(++count);
}

class FolderDocument final : public DocumentSink {
 public:
  FolderDocument(const fs::path& folder, const PageMaker& makePage, Trace& trace)
      : folder_(folder),
        temporary_(folder / temporaryName()),
        trace_(trace),
        json_(temporaryFile(jsonFile)),
        text_(temporaryFile(textFile)) {
    if (makePage) page_ = makePage(utf8Of(temporaryFile(pdfFile)), utf8Of(temporaryFile(pngFile)));
  }

  ~FolderDocument() override {
    page_.reset();
    json_.close();
    text_.close();
    std::error_code ignored;
    for (int kind = 0; kind < fileKinds; ++kind) fs::remove(temporaryFile(static_cast<FileKind>(kind)), ignored);
  }

  FolderDocument(const FolderDocument&) = delete;
  FolderDocument& operator=(const FolderDocument&) = delete;

  bool good() const { return json_.good() && text_.good(); }

  bool add(const Operation& operation) override {
    std::visit(JsonWriter{json_.text()}, operation);
    json_.text() += '\n';
    if (const auto* print = std::get_if<PrintStatement>(&operation)) {
      for (const char byte : print->text) appendUtf8(text_.text(), unicodeOf(byte));
      text_.text() += '\n';
    }
    if (page_ && !page_->add(operation)) page_.reset();
    return (json_.write(false) && text_.write(false)) || fail("scrittura non riuscita");
  }

  bool finish() override {
    hasPage_ = page_ && page_->finish();
    page_.reset();
    if (!json_.close() || !text_.close()) return fail("scrittura non riuscita");
    std::error_code error;
    const std::string number = numbered(nextNumber(folder_, error));
    for (int kind = 0; kind < fileKinds && !error; ++kind) {
      if ((kind == pdfFile || kind == pngFile) && !hasPage_) continue;
      fs::rename(temporaryFile(static_cast<FileKind>(kind)), folder_ / (number + std::string(extensions.at(kind))),
                 error);
    }
    return !error || fail(error.message());
  }

  bool fail(std::string_view reason) {
    trace_.failed("EndDoc", nearestCodePage(utf8Of(folder_)), nearestCodePage(reason));
    return false;
  }

 private:
  fs::path temporaryFile(FileKind kind) const {
    fs::path path = temporary_;
    return path += extensions.at(kind);
  }

  fs::path folder_;
  fs::path temporary_;
  Trace& trace_;
  GrowingFile json_;
  GrowingFile text_;
  std::unique_ptr<DocumentSink> page_;
  bool hasPage_ = false;
};

}  // namespace

FolderPrinter::FolderPrinter(std::string folder, PageMaker makePage, Trace& trace)
    : folder_(std::move(folder)), makePage_(std::move(makePage)), trace_(trace) {}

std::unique_ptr<DocumentSink> FolderPrinter::open() {
  std::error_code error;
  const fs::path folder = pathOf(folder_);
  fs::create_directories(folder, error);
  auto document = std::make_unique<FolderDocument>(folder, makePage_, trace_);
  if (document->good()) return document;
  document->fail("la cartella non si può scrivere");
  return nullptr;
}

std::string jsonOf(const Operation& operation) {
  std::string json;
  std::visit(JsonWriter{json}, operation);
  return json;
}

}  // namespace tellaxis::platform
