// Spool: bytes kept until a document is complete, in memory up to a bound and in a temporary file beyond it.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace tellaxis::platform {

class Spool {
 public:
  explicit Spool(std::size_t inMemory = 1024 * 1024) : inMemory_(inMemory) {}

  /// Makes sure that the next bytes find room. False when the disk has none; what was appended stays.
  bool makeRoom();

  /// False, and nothing of `bytes` is kept, when there is no more room on the disk.
  bool append(std::string_view bytes);

  /// Goes back to the first byte for reading; nothing is appended from then on. False on a failure.
  bool rewind();

  /// Fills `buffer` with the bytes that come next and returns how many it got: 0 at the end.
  std::size_t read(std::span<char> buffer);

  /// True after a failed read.
  bool failed() const { return failed_; }

  std::size_t size() const { return size_; }

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  bool flush();

  std::size_t inMemory_;
  std::string memory_;
  std::unique_ptr<std::FILE, Close> file_;
  std::size_t position_ = 0;
  std::size_t size_ = 0;
  bool failed_ = false;
};

}  // namespace tellaxis::platform
