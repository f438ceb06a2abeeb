// Text lines: a text file read line by line, whatever its size.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/input/input_bytes.h"
#include "platform/files.h"
#include "platform/host.h"

namespace tellaxis {

/// A line ends at CR LF, at LF or at CR; the last may have no end. No more than one line is held in memory, and of that
/// no more than `longest` bytes: the rest of a longer one is dropped.
class TextLines {
 public:
  static constexpr std::size_t longest = std::size_t{1} << 20;

  /// Opens and reads a file; a line that is longer than it may be is traced.
  TextLines(platform::Host& host, std::string_view path)
      : bytes_(host.files.openInput(path)), trace_(&host.trace), path_(path) {}

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
  void keep(std::string_view piece);

  InputBytes bytes_;
  platform::Trace* trace_ = nullptr;
  std::string path_;
  std::string line_;
  bool afterCarriageReturn_ = false;
  bool ended_ = false;
  bool tooLong_ = false;
};

}  // namespace tellaxis
