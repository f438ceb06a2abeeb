// Spool: bytes kept until a document is complete.
#include "platform/printing/spool.h"

#include <algorithm>
#include <cstdlib>

namespace tellaxis::platform {

namespace {

/// A file of no name that is gone when it is closed; null on a failure.
std::FILE* temporaryFile() {
#ifdef _WIN32
  // There tmpfile writes into the root of the drive, which not everybody may.
  const std::unique_ptr<wchar_t, decltype(&std::free)> name(_wtempnam(nullptr, L"tlx"), &std::free);
  return name ? _wfopen(name.get(), L"w+bTD") : nullptr;
#else
  return std::tmpfile();
#endif
}

}  // namespace

bool Spool::append(std::string_view bytes) {
  if (!makeRoom()) return false;
  memory_ += bytes;
  size_ += bytes.size();
  return true;
}

bool Spool::makeRoom() { return memory_.size() < inMemory_ || flush(); }

/// What could not be written is kept, to be written again from where it belongs.
bool Spool::flush() {
  if (!file_) {
    file_.reset(temporaryFile());
    if (!file_) return false;
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);
  }
  std::clearerr(file_.get());
  const auto place = static_cast<long>(size_ - memory_.size());
  if (std::fseek(file_.get(), place, SEEK_SET) != 0 ||
      std::fwrite(memory_.data(), 1, memory_.size(), file_.get()) != memory_.size())
    return false;
  memory_.clear();
  return true;
}

bool Spool::rewind() {
  position_ = 0;
  failed_ = file_ && (!flush() || std::fseek(file_.get(), 0, SEEK_SET) != 0);
  return !failed_;
}

std::size_t Spool::read(std::span<char> buffer) {
  if (file_) {
    const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), file_.get());
    failed_ = failed_ || std::ferror(file_.get()) != 0;
    return got;
  }
  const std::size_t got = std::min(buffer.size(), memory_.size() - position_);
  std::copy_n(memory_.begin() + static_cast<std::ptrdiff_t>(position_), got, buffer.begin());
  position_ += got;
  return got;
}

}  // namespace tellaxis::platform
