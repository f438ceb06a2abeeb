// Receipt paper: a receipt printer without a case, what comes out of it and what it says of itself.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace tellaxis::tools {

/// Takes ESC/POS documents, one a connection. As a real printer does, it keeps what it cannot print and prints it,
/// once, when it can, and answers questions (DLE EOT) at once, also without paper.
class ReceiptPaper {
 public:
  /// Carries out what its owner says; false for words that it does not know:
  /// "senza carta", "carta" (a new roll), "carta N" (paper for N lines more), "carta poca", "apri", "chiudi",
  /// "muta" (answers nothing), "parla", "muori N" (dies after N bytes more of documents), "riaccendi".
  bool obey(std::string_view words);

  /// Bytes of the open connection; returns what it answers.
  std::string receive(std::string_view bytes);

  /// The connection ended; the document is complete.
  void end();

  /// It takes and says nothing any more; what it had not printed is lost.
  bool isDead() const { return dead_; }

  /// What came out since the last call: text in UTF-8, other things in brackets.
  std::string takePrinted();

 private:
  bool hasPaper() const { return !linesLeft_ || *linesLeft_ > 0; }
  char status(char question) const;
  void die();
  void print();

  std::optional<int> linesLeft_;  ///< absent: more than anyone prints
  bool low_ = false;
  bool open_ = false;
  bool mute_ = false;
  bool dead_ = false;
  std::optional<int> bytesToLive_;
  std::string question_;  ///< the beginning of one
  std::string document_;
  std::deque<std::string> waiting_;  ///< lines
  std::string printed_;
};

}  // namespace tellaxis::tools
