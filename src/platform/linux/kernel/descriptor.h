// Descriptor: an open file descriptor with an owner.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace tellaxis::platform {

/// Closes its descriptor when destroyed; `errno` keeps its value meanwhile.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ < 0) return;
    const int error = errno;
    ::close(number_);
    errno = error;
  }

  explicit operator bool() const { return number_ >= 0; }
  int number() const { return number_; }

 private:
  int number_ = -1;
};

}  // namespace tellaxis::platform
