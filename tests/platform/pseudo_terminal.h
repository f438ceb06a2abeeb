// Pseudo terminal: both ends of a line without a device, as a serial device that the tests hold the other end of.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace tellaxis::test {

/// The far end of a serial line. Our end is a device file, `device()`.
class PseudoTerminal {
 public:
  PseudoTerminal() {
    char name[64] = {};
    EXPECT_TRUE(::grantpt(master_) == 0 && ::unlockpt(master_) == 0 && ::ptsname_r(master_, name, sizeof name) == 0);
    device_ = name;
  }
  ~PseudoTerminal() { unplug(); }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  const std::string& device() const { return device_; }
  int descriptor() const { return master_; }

  /// Makes `link` stand for the device, in place of what it stood for before.
  void linkAs(const std::string& link) const {
    std::filesystem::remove(link);
    std::filesystem::create_symlink(device_, link);
  }

  /// What came within a second, as soon as it is `size` bytes.
  std::string receive(std::size_t size) const {
    std::string received;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    pollfd readable{.fd = master_, .events = POLLIN, .revents = 0};
    while (received.size() < size && std::chrono::steady_clock::now() < end) {
      if (::poll(&readable, 1, 20) <= 0) continue;
      char buffer[4096];
      const ssize_t count = ::read(master_, buffer, sizeof buffer);
      if (count > 0) received.append(buffer, static_cast<std::size_t>(count));
    }
    return received;
  }

  /// True when nothing comes within a short time.
  bool isSilent() const {
    pollfd readable{.fd = master_, .events = POLLIN, .revents = 0};
    return ::poll(&readable, 1, 50) == 0 || (readable.revents & POLLIN) == 0;
  }

  void unplug() {
    if (master_ >= 0) ::close(master_);
    master_ = -1;
  }

 private:
  int master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  std::string device_;
};

}  // namespace tellaxis::test
