// Folder printer: documents written as files, complete under a temporary name before they get their number.
#include "platform/printing/folder_printer.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/printing/document_json.h"
#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t numberDigits = 6;
constexpr std::size_t writeAt = 64 * 1024;

constexpr std::string_view textEnding = ".txt";
constexpr std::string_view jsonEnding = ".jsonl";
/// Of all files that a document may have, on any system.
constexpr std::string_view endings[] = {textEnding, ".pdf", ".png", ".bmp", jsonEnding};

fs::path pathOf(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

std::string utf8Of(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

/// A file that is written as its text grows. What could not be written is kept and written again later.
class GrowingFile {
 public:
  explicit GrowingFile(const fs::path& path) : stream_(path, std::ios::binary | std::ios::trunc) {}

  std::string& text() { return text_; }

  /// Writes what came together, where it is much; false when that could not be done.
  bool makeRoom() { return text_.size() < writeAt || write(); }

  bool close() {
    const bool written = write();
    stream_.close();
    return written && !stream_.fail();
  }

  bool good() const { return stream_.good(); }

 private:
  bool write() {
    stream_.clear();
    stream_.seekp(written_);
    stream_.write(text_.data(), static_cast<std::streamsize>(text_.size())).flush();
    if (!stream_.good()) return false;
    written_ += static_cast<std::streamoff>(text_.size());
    text_.clear();
    return true;
  }

  std::ofstream stream_;
  std::string text_;
  std::streamoff written_ = 0;
};

/// The number of a document's file ("000012.pdf"); 0 for any other file.
std::uint64_t numberOf(const fs::path& file) {
  const std::string name = utf8Of(file.filename());
  const std::size_t dot = name.find('.');
  if (dot == std::string::npos || dot < numberDigits) return 0;
  if (std::find(std::begin(endings), std::end(endings), std::string_view(name).substr(dot)) == std::end(endings))
    return 0;
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
  FolderDocument(const fs::path& folder, const std::optional<PageMaker>& pages, Trace& trace)
      : folder_(folder),
        temporary_(folder / temporaryName()),
        trace_(trace),
        json_(temporaryFile(jsonEnding)),
        text_(temporaryFile(textEnding)) {
    if (!pages) return;
    pageEndings_ = pages->endings;
    page_ = pages->open(utf8Of(temporary_));
  }

  ~FolderDocument() override {
    page_.reset();
    json_.close();
    text_.close();
    std::error_code ignored;
    for (const std::string_view ending : allEndings()) fs::remove(temporaryFile(ending), ignored);
  }

  FolderDocument(const FolderDocument&) = delete;
  FolderDocument& operator=(const FolderDocument&) = delete;

  bool good() const { return json_.good() && text_.good(); }

  bool add(const Operation& operation) override {
    if (!json_.makeRoom() || !text_.makeRoom()) return fail("Print", "scrittura non riuscita");
    appendJson(json_.text(), operation);
    json_.text() += '\n';
    if (const auto* print = std::get_if<PrintStatement>(&operation)) {
      for (const char byte : print->text) appendUtf8(text_.text(), unicodeOf(byte));
      text_.text() += '\n';
    }
    if (page_ && !page_->add(operation)) page_.reset();
    return true;
  }

  bool finish() override {
    const bool hasPage = page_ && page_->finish();
    page_.reset();
    if (!hasPage) removePage();
    if (!json_.close() || !text_.close()) return fail("EndDoc", "scrittura non riuscita");
    std::error_code error;
    const std::string number = numbered(nextNumber(folder_, error));
    std::vector<fs::path> named;
    for (const std::string_view ending : allEndings()) {
      const fs::path file = folder_ / (number + std::string(ending));
      fs::rename(temporaryFile(ending), file, error);
      if (error) break;
      named.push_back(file);
    }
    if (!error) return true;
    std::error_code ignored;
    for (const fs::path& file : named) fs::remove(file, ignored);
    return fail("EndDoc", error.message());
  }

  bool fail(std::string_view operation, std::string_view reason) {
    trace_.failed(operation, nearestCodePage(utf8Of(folder_)), nearestCodePage(reason));
    return false;
  }

 private:
  fs::path temporaryFile(std::string_view ending) const {
    fs::path path = temporary_;
    return path += ending;
  }

  /// The document's files in the order in which they get their names.
  std::vector<std::string_view> allEndings() const {
    std::vector<std::string_view> all = pageEndings_;
    all.insert(all.begin(), textEnding);
    all.push_back(jsonEnding);
    return all;
  }

  void removePage() {
    std::error_code ignored;
    for (const std::string_view ending : std::exchange(pageEndings_, {})) fs::remove(temporaryFile(ending), ignored);
  }

  fs::path folder_;
  fs::path temporary_;
  Trace& trace_;
  GrowingFile json_;
  GrowingFile text_;
  std::vector<std::string_view> pageEndings_;  ///< none where no page is drawn
  std::unique_ptr<DocumentSink> page_;
};

}  // namespace

FolderPrinter::FolderPrinter(std::string folder, std::optional<PageMaker> pages, Trace& trace)
    : folder_(std::move(folder)), pages_(std::move(pages)), trace_(trace) {}

std::unique_ptr<DocumentSink> FolderPrinter::open() {
  std::error_code error;
  const fs::path folder = pathOf(folder_);
  fs::create_directories(folder, error);
  auto document = std::make_unique<FolderDocument>(folder, pages_, trace_);
  if (document->good()) return document;
  document->fail("Print", "la cartella non si può scrivere");
  return nullptr;
}

}  // namespace tellaxis::platform
