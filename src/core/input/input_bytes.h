// Input bytes: an open file read through a buffer of fixed size.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "platform/files.h"

namespace tellaxis {

/// The bytes of a file from its first one on. A file that could not be opened (null) has none, and has failed.
class InputBytes {
 public:
  explicit InputBytes(std::unique_ptr<platform::InputFile> file);

  /// What is read and not yet taken, at least one byte of it; empty at the end and after a failure. Valid until the
  /// next call.
  std::string_view rest();

  /// Goes on past `count` bytes of `rest`.
  void take(std::size_t count);

  /// True once opening or reading has failed; an end without it is the file's own end.
  bool failed() const { return failed_; }

  /// Closes the file, so that it can be deleted; nothing more is read.
  void close();

 private:
  std::unique_ptr<platform::InputFile> file_;
  std::unique_ptr<char[]> buffer_;
  std::string_view rest_;
  bool failed_ = false;
};

}  // namespace tellaxis
