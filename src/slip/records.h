// Records: the delimited fields of a text file, read one after the other.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "core/input/text_lines.h"

namespace tellaxis {

/// A record ends at a comma or at a line's end. Leading blanks are skipped. A record wholly enclosed in double quotes,
/// blanks behind them aside, is taken without them, commas inside and all. An empty line is an empty record.
class Records {
 public:
  Records(platform::Host& host, std::string_view path) : lines_(host, path) {}
  explicit Records(std::unique_ptr<platform::InputFile> file) : lines_(std::move(file)) {}

  /// The next record, valid until the next call; nothing at the end of the file. Throws `StepFailed` when the file
  /// could not be opened or read.
  std::optional<std::string_view> next();

  /// Closes the file, so that it can be deleted.
  void close() { lines_.close(); }

 private:
  bool beginLine();
  void endRecord(std::size_t end);
  std::optional<std::size_t> closingQuote();

  TextLines lines_;
  std::string_view rest_;        ///< of the line
  bool inLine_ = false;          ///< another record of the line follows
  bool noClosingQuote_ = false;  ///< none was found in the rest of the line
};

}  // namespace tellaxis
