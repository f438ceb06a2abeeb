// Receipt paper: documents, lines, questions.
#include "receipt_paper.h"

#include <charconv>
#include <utility>

#include "escpos_decoder.h"
#include "text/code_page.h"

namespace tellaxis::tools {

namespace {

constexpr std::string_view questionStart = "\x10\x04";

/// What an event of a document looks like on paper; nothing for one that only changes what follows.
struct Appearance {
  std::string_view event;
  std::string_view before;
  std::string_view after;
};

constexpr Appearance appearances[] = {
    {"text ", "", ""},
    {"raster ", "[immagine ", "]"},
    {"columns ", "[immagine ", "]"},
    {"ean13 ", "[codice a barre ", "]"},
    {"cut", "[taglio]", ""},
    {"eject", "[espulsione]", ""},
};

std::optional<std::string> lineOf(std::string_view event) {
  if (event == "line") return std::string();
  for (const Appearance& row : appearances) {
    if (!event.starts_with(row.event)) continue;
    const std::string_view rest = row.event.ends_with(' ') ? event.substr(row.event.size()) : "";
    return std::string(row.before) + utf8FromCodePage(rest) + std::string(row.after);
  }
  return std::nullopt;
}

/// The number behind `word` in `words`; nothing where something else stands there.
std::optional<int> numberBehind(std::string_view words, std::string_view word) {
  if (!words.starts_with(word)) return std::nullopt;
  int number = 0;
  const char* end = words.data() + words.size();
  const auto result = std::from_chars(words.data() + word.size(), end, number);
  if (result.ec != std::errc{} || result.ptr != end || number < 0) return std::nullopt;
  return number;
}

}  // namespace

bool ReceiptPaper::obey(std::string_view words) {
  const auto lines = numberBehind(words, "carta ");
  const auto bytes = numberBehind(words, "muori ");
  if (words == "carta") {
    linesLeft_.reset();
    low_ = false;
  } else if (lines || words == "senza carta") {
    linesLeft_ = lines.value_or(0);
  } else if (words == "carta poca") {
    low_ = true;
  } else if (words == "apri" || words == "chiudi") {
    open_ = words == "apri";
  } else if (words == "muta" || words == "parla") {
    mute_ = words == "muta";
  } else if (bytes || words == "muori") {
    bytesToLive_ = bytes.value_or(0);
    if (*bytesToLive_ == 0) die();
  } else if (words == "riaccendi") {
    dead_ = false;
    bytesToLive_.reset();
  } else {
    return false;
  }
  print();
  return true;
}

std::string ReceiptPaper::receive(std::string_view bytes) {
  std::string answers;
  for (const char byte : bytes) {
    if (dead_) break;
    // Inside a document the same bytes may be a part of a picture.
    if (document_.empty()) {
      question_ += byte;
      if (questionStart.starts_with(question_)) continue;
      if (question_.starts_with(questionStart)) {
        if (!mute_) answers += status(byte);
        question_.clear();
        continue;
      }
      document_ = std::move(question_);
      question_.clear();
    } else {
      document_ += byte;
    }
    if (bytesToLive_ && --*bytesToLive_ <= 0) die();
  }
  return answers;
}

void ReceiptPaper::end() {
  question_.clear();
  if (document_.empty()) return;
  const Decoded decoded = decodeEscPos(document_);
  document_.clear();
  for (const std::string& event : decoded.events)
    if (auto line = lineOf(event)) waiting_.push_back(std::move(*line));
  if (decoded.error) waiting_.push_back("[comandi sconosciuti: " + *decoded.error + "]");
  print();
}

std::string ReceiptPaper::takePrinted() { return std::exchange(printed_, {}); }

char ReceiptPaper::status(char question) const {
  const bool isOffLine = open_ || !hasPaper();
  int bits = 0x12;
  if (question == 1 && isOffLine) bits |= 0x08;
  if (question == 2 && open_) bits |= 0x04;
  if (question == 2 && !hasPaper()) bits |= 0x20;
  if (question == 4 && (low_ || !hasPaper())) bits |= 0x0C;
  if (question == 4 && !hasPaper()) bits |= 0x60;
  return static_cast<char>(bits);
}

void ReceiptPaper::die() {
  dead_ = true;
  document_.clear();
  question_.clear();
  waiting_.clear();
}

void ReceiptPaper::print() {
  while (!waiting_.empty() && !open_ && hasPaper()) {
    printed_ += waiting_.front() + "\n";
    waiting_.pop_front();
    if (linesLeft_) --*linesLeft_;
  }
}

}  // namespace tellaxis::tools
