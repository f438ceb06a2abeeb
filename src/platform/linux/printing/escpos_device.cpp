// ESC/POS device: writing without ever waiting longer than the printer may be silent.
#include "platform/linux/printing/escpos_device.h"

#include <fcntl.h>
#include <linux/sockios.h>
#include <netdb.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds drainPoll{5};
constexpr const char* silentPrinter = "la stampante non accetta dati";

std::string reasonOf(int error) { return nearestCodePage(std::strerror(error)); }

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int number() const { return number_; }

 private:
  int number_;
};

/// Waits until the descriptor takes bytes; a reason where it does not.
std::optional<std::string> waitUntilWritable(int descriptor, milliseconds patience) {
  const auto deadline = steady_clock::now() + patience;
  for (;;) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
    pollfd entry{descriptor, POLLOUT, 0};
    const int ready = poll(&entry, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
    if (ready > 0) return std::nullopt;
    if (ready < 0 && errno != EINTR) return reasonOf(errno);
    if (ready == 0) return silentPrinter;
  }
}

/// Writes all bytes; a reason where they could not be written.
std::optional<std::string> writeAll(int descriptor, std::string_view bytes, milliseconds patience) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (written == 0 || errno == EAGAIN) {
      if (auto reason = waitUntilWritable(descriptor, patience)) return reason;
    } else if (errno != EINTR) {
      return reasonOf(errno);
    }
  }
  return std::nullopt;
}

/// Waits until what the system still holds (as `request` tells) has gone to the printer.
std::optional<std::string> drain(int descriptor, unsigned long request, milliseconds patience) {
  int held = 0;
  int before = -1;
  auto deadline = steady_clock::now() + patience;
  while (ioctl(descriptor, request, &held) == 0 && held > 0) {
    if (held != before) deadline = steady_clock::now() + patience;
    if (steady_clock::now() >= deadline) return silentPrinter;
    before = held;
    std::this_thread::sleep_for(drainPoll);
  }
  return std::nullopt;
}

std::optional<std::string> sendDocument(int descriptor, Spool& document, milliseconds patience) {
  std::vector<char> block(std::size_t{64} * 1024);
  while (const std::size_t got = document.read(block))
    if (auto reason = writeAll(descriptor, {block.data(), got}, patience)) return reason;
  if (document.failed()) return "il documento non si pu\xF2 rileggere";
  return std::nullopt;
}

class Channel : public ByteChannel {
 public:
  Channel(std::string subject, Trace& trace, milliseconds patience)
      : subject_(std::move(subject)), trace_(trace), patience_(patience) {}

  bool send(Spool& document) override {
    const auto reason = sendTo(document);
    if (reason) trace_.failed("EndDoc", subject_, *reason);
    return !reason;
  }

 protected:
  virtual std::optional<std::string> sendTo(Spool& document) = 0;
  milliseconds patience() const { return patience_; }

 private:
  std::string subject_;
  Trace& trace_;
  milliseconds patience_;
};

/// A serial line must pass every byte as it is.
void makeRaw(int descriptor) {
  termios settings{};
  if (tcgetattr(descriptor, &settings) != 0) return;
  cfmakeraw(&settings);
  tcsetattr(descriptor, TCSANOW, &settings);
}

class DeviceChannel final : public Channel {
 public:
  DeviceChannel(std::string path, Trace& trace, milliseconds patience)
      : Channel(nearestCodePage(path), trace, patience), path_(std::move(path)) {}

 protected:
  std::optional<std::string> sendTo(Spool& document) override {
    const Descriptor device(open(path_.c_str(), O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (device.number() < 0) return reasonOf(errno);
    const bool isLine = isatty(device.number()) != 0;
    if (isLine) makeRaw(device.number());
    if (auto reason = sendDocument(device.number(), document, patience())) {
      if (isLine) tcflush(device.number(), TCOFLUSH);
      return reason;
    }
    return isLine ? drain(device.number(), TIOCOUTQ, patience()) : std::nullopt;
  }

 private:
  std::string path_;
};

class NetworkChannel final : public Channel {
 public:
  NetworkChannel(const std::string& host, std::uint16_t port, Trace& trace, milliseconds patience)
      : Channel(nearestCodePage(host) + ":" + std::to_string(port), trace, patience), host_(host), port_(port) {}

 protected:
  std::optional<std::string> sendTo(Spool& document) override {
    std::string reason;
    const auto connection = connectAny(reason);
    if (!connection) return reason;
    if (auto failure = sendDocument(connection->number(), document, patience())) return failure;
    if (auto failure = drain(connection->number(), SIOCOUTQ, patience())) return failure;
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(connection->number(), SOL_SOCKET, SO_ERROR, &error, &size);
    if (error != 0) return reasonOf(error);
    shutdown(connection->number(), SHUT_WR);
    return std::nullopt;
  }

 private:
  /// Connected to the first address of the host that answers.
  std::optional<Descriptor> connectAny(std::string& reason) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* addresses = nullptr;
    const int failure = getaddrinfo(host_.c_str(), std::to_string(port_).c_str(), &hints, &addresses);
    if (failure != 0) {
      reason = nearestCodePage(gai_strerror(failure));
      return std::nullopt;
    }
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(addresses, &freeaddrinfo);
    for (const addrinfo* address = addresses; address != nullptr; address = address->ai_next)
      if (auto connection = connectTo(*address, reason)) return connection;
    return std::nullopt;
  }

  std::optional<Descriptor> connectTo(const addrinfo& address, std::string& reason) {
    Descriptor connection(
        socket(address.ai_family, address.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, address.ai_protocol));
    if (connection.number() < 0 ||
        (connect(connection.number(), address.ai_addr, address.ai_addrlen) != 0 && errno != EINPROGRESS)) {
      reason = reasonOf(errno);
      return std::nullopt;
    }
    if (const auto silent = waitUntilWritable(connection.number(), patience())) {
      reason = *silent;
      return std::nullopt;
    }
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(connection.number(), SOL_SOCKET, SO_ERROR, &error, &size);
    if (error == 0) return connection;
    reason = reasonOf(error);
    return std::nullopt;
  }

  std::string host_;
  std::uint16_t port_;
};

}  // namespace

std::unique_ptr<ByteChannel> openDeviceChannel(std::string path, Trace& trace, milliseconds patience) {
  return std::make_unique<DeviceChannel>(std::move(path), trace, patience);
}

std::unique_ptr<ByteChannel> openNetworkChannel(const std::string& host, std::uint16_t port, Trace& trace,
                                                milliseconds patience) {
  return std::make_unique<NetworkChannel>(host, port, trace, patience);
}

}  // namespace tellaxis::platform
