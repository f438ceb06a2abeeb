// Text lines: a text file read line by line, whatever its size.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/input/input_bytes.h"
#include "platform/files.h"

namespace tellaxis {

/// A line ends at CR LF, at LF or at CR; the last may have no end. No more than one line is held in memory.
class TextLines {
 public:
  /// Reads an opened file; one that could not be opened (null) has no lines.
  explicit TextLines(std::unique_ptr<platform::InputFile> file) : bytes_(std::move(file)) {}

  /// The next line without its end, valid until the next call; nothing after the last line. A line that could not be
  /// read to its end is not given, nor is any after it.
  std::optional<std::string_view> next();

  /// Whether the line given last has an end; only the last line of a file may have none.
  bool ended() const { return ended_; }

  /// True when there is no next line because the file could not be opened or read.
  bool failed() const { return bytes_.failed(); }

  /// Closes the file, so that it can be deleted; there are no more lines.
  void close() { bytes_.close(); }

 private:
  InputBytes bytes_;
  std::string line_;
  bool afterCarriageReturn_ = false;
  bool ended_ = false;
};

}  // namespace tellaxis
