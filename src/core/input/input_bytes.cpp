// Input bytes: filling the buffer.
#include "core/input/input_bytes.h"

#include <utility>

namespace tellaxis {

namespace {

constexpr std::size_t bufferSize = 16'384;

}  // namespace

InputBytes::InputBytes(std::unique_ptr<platform::InputFile> file) : file_(std::move(file)), failed_(file_ == nullptr) {
  if (file_) buffer_ = std::make_unique<char[]>(bufferSize);
}

std::string_view InputBytes::rest() {
  if (rest_.empty() && file_) {
    const auto size = file_->read({buffer_.get(), bufferSize});
    failed_ = !size;
    rest_ = {buffer_.get(), size.value_or(0)};
    if (rest_.empty()) close();
  }
  return rest_;
}

void InputBytes::take(std::size_t count) { rest_.remove_prefix(count); }

void InputBytes::close() {
  file_.reset();
  rest_ = {};
}

}  // namespace tellaxis
