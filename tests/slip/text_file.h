// Text file: an open file that holds a given text.
#pragma once

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "platform/files.h"

namespace tellaxis {

class TextFile : public platform::InputFile {
 public:
  explicit TextFile(std::string text) : text_(std::move(text)) {}

  std::optional<std::size_t> read(std::span<char> buffer) override {
    const std::size_t size = std::min(buffer.size(), text_.size() - position_);
    std::memcpy(buffer.data(), text_.data() + position_, size);
    position_ += size;
    return size;
  }

 private:
  std::string text_;
  std::size_t position_ = 0;
};

}  // namespace tellaxis
