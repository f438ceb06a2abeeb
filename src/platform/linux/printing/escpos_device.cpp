// ESC/POS device: writing without ever waiting longer than the printer may be silent.
#include "platform/linux/printing/escpos_device.h"

#include <fcntl.h>
#include <linux/sockios.h>
#include <netdb.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "platform/linux/kernel/descriptor.h"
#include "platform/linux/kernel/reason.h"
#include "platform/linux/kernel/timed_write.h"
#include "platform/linux/kernel/uninterrupted.h"
#include "platform/linux/serial/line_settings.h"
#include "platform/printing/escpos_status.h"
#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds connectLimit{2000};
constexpr milliseconds endLimit{1000};
constexpr milliseconds drainPoll{5};
constexpr milliseconds refusedPause{50};
constexpr const char* silentPrinter = "la stampante non accetta dati";

/// Nothing where a step was done.
using Reason = std::optional<std::string>;

std::string lastReason() { return errno == EAGAIN ? silentPrinter : reasonOf(errno); }

/// Waits until what the system still holds (as `request` tells) has gone to the printer.
Reason drain(const Descriptor& device, unsigned long request, milliseconds timeout) {
  int held = 0;
  int before = -1;
  auto deadline = steady_clock::now() + timeout;
  while (ioctl(device.number(), request, &held) == 0 && held > 0) {
    if (held != before) deadline = steady_clock::now() + timeout;
    if (steady_clock::now() >= deadline) return silentPrinter;
    before = held;
    std::this_thread::sleep_for(drainPoll);
  }
  return std::nullopt;
}

Reason sendDocument(const Descriptor& device, Spool& document, milliseconds timeout) {
  std::vector<char> block(std::size_t{64} * 1024);
  while (const std::size_t got = document.read(block))
    if (!writeAll(device, {block.data(), got}, timeout)) return lastReason();
  if (document.failed()) return "il documento non si pu\xF2 rileggere";
  return std::nullopt;
}

/// Asks a printer that what is written to `device` goes to, and whose words are read from there.
PrinterState askThrough(const Descriptor& device, steady_clock::time_point deadline) {
  const auto ask = [&](std::string_view question) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
    return left > milliseconds(0) && writeAll(device, question, left);
  };
  const auto hear = [&]() -> std::optional<unsigned char> {
    unsigned char byte = 0;
    while (waitUntil(device, POLLIN, deadline)) {
      const ssize_t got = untilUninterrupted([&] { return read(device.number(), &byte, 1); });
      if (got == 1) return byte;
      if (got == 0 || errno != EAGAIN) return std::nullopt;
    }
    return std::nullopt;
  };
  return askState(ask, hear);
}

class Channel : public ByteChannel {
 public:
  Channel(std::string subject, Trace& trace, milliseconds timeout)
      : subject_(std::move(subject)), trace_(trace), timeout_(timeout) {}

  bool send(Spool& document) override {
    const auto reason = sendTo(document);
    if (reason) trace_.failed("EndDoc", subject_, *reason);
    return !reason;
  }

  PrinterState state() override { return ask(steady_clock::now() + statusAnswerLimit); }

 protected:
  virtual Reason sendTo(Spool& document) = 0;
  virtual PrinterState ask(steady_clock::time_point deadline) = 0;
  milliseconds timeout() const { return timeout_; }

 private:
  std::string subject_;
  Trace& trace_;
  milliseconds timeout_;
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
  DeviceChannel(std::string path, const std::optional<LineSettings>& line, Trace& trace, milliseconds timeout)
      : Channel(nearestCodePage(path), trace, timeout), path_(std::move(path)), line_(line) {}

 protected:
  Reason sendTo(Spool& document) override {
    const Descriptor device(open(path_.c_str(), O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!device) return reasonOf(errno);
    const bool isLine = isatty(device.number()) != 0;
    if (line_ && !applyLineSettings(device.number(), *line_)) return reasonOf(errno);
    if (isLine && !line_) makeRaw(device.number());
    if (Reason reason = sendDocument(device, document, timeout())) {
      if (isLine) tcflush(device.number(), TCOFLUSH);
      return reason;
    }
    return isLine ? drain(device, TIOCOUTQ, timeout()) : std::nullopt;
  }

  /// A plain file takes everything and is asked nothing; a pipe would hand us our own question.
  PrinterState ask(steady_clock::time_point deadline) override {
    struct stat status {};
    if (stat(path_.c_str(), &status) != 0) return errno == ENOENT ? PrinterState::offLine : PrinterState::unknown;
    if (S_ISREG(status.st_mode)) return PrinterState::ready;
    if (!S_ISCHR(status.st_mode)) return PrinterState::unknown;
    const Descriptor device(open(path_.c_str(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!device) return errno == ENODEV || errno == ENXIO ? PrinterState::offLine : PrinterState::unknown;
    const bool isLine = isatty(device.number()) != 0;
    if (line_ && !applyLineSettings(device.number(), *line_)) return PrinterState::unknown;
    if (isLine && !line_) makeRaw(device.number());
    if (isLine) tcflush(device.number(), TCIFLUSH);
    const PrinterState state = askThrough(device, deadline);
    // A question that the printer holds back must not come before the next document.
    if (isLine && state == PrinterState::unknown) tcflush(device.number(), TCOFLUSH);
    return state;
  }

 private:
  std::string path_;
  std::optional<LineSettings> line_;
};

/// The error that a connection has met; 0: none.
int errorOf(const Descriptor& connection) {
  int error = 0;
  socklen_t size = sizeof error;
  return getsockopt(connection.number(), SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

/// After the last byte: a printer that breaks the connection off has not printed, whatever its system took. One that
/// keeps it open has all bytes, and is waited for no longer than `endLimit`. What it says is not looked at.
Reason awaitEnd(const Descriptor& connection) {
  if (shutdown(connection.number(), SHUT_WR) != 0) return reasonOf(errno);
  const auto deadline = steady_clock::now() + endLimit;
  std::array<char, 256> ignored{};
  while (waitUntil(connection, POLLIN, deadline)) {
    const ssize_t got = untilUninterrupted([&] { return read(connection.number(), ignored.data(), ignored.size()); });
    if (got == 0) return std::nullopt;
    if (got < 0 && errno != EAGAIN) return reasonOf(errno);
  }
  return std::nullopt;
}

class NetworkChannel final : public Channel {
 public:
  NetworkChannel(const std::string& host, std::uint16_t port, Trace& trace, milliseconds timeout)
      : Channel(nearestCodePage(host) + ":" + std::to_string(port), trace, timeout), host_(host), port_(port) {}

 protected:
  Reason sendTo(Spool& document) override {
    std::string reason;
    const Descriptor connection = connectAny(steady_clock::now() + connectLimit, reason);
    if (!connection) return reason;
    if (Reason failure = sendDocument(connection, document, timeout())) return failure;
    if (Reason failure = drain(connection, SIOCOUTQ, timeout())) return failure;
    if (const int error = errorOf(connection)) return reasonOf(error);
    return awaitEnd(connection);
  }

  /// Some printers refuse for a moment after the end of a connection.
  PrinterState ask(steady_clock::time_point deadline) override {
    do {
      std::string ignored;
      if (const Descriptor connection = connectAny(deadline, ignored)) return askThrough(connection, deadline);
      std::this_thread::sleep_for(refusedPause);
    } while (steady_clock::now() < deadline);
    return PrinterState::offLine;
  }

 private:
  /// Connected to the first address of the host that answers, within one limit for all.
  Descriptor connectAny(steady_clock::time_point deadline, std::string& reason) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* addresses = nullptr;
    const int failure = getaddrinfo(host_.c_str(), std::to_string(port_).c_str(), &hints, &addresses);
    if (failure != 0) {
      reason = nearestCodePage(gai_strerror(failure));
      return {};
    }
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(addresses, &freeaddrinfo);
    for (const addrinfo* address = addresses; address != nullptr; address = address->ai_next)
      if (Descriptor connection = connectTo(*address, deadline, reason)) return connection;
    return {};
  }

  static Descriptor connectTo(const addrinfo& address, steady_clock::time_point deadline, std::string& reason) {
    Descriptor connection(
        socket(address.ai_family, address.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, address.ai_protocol));
    int error = 0;
    if (!connection ||
        (connect(connection.number(), address.ai_addr, address.ai_addrlen) != 0 && errno != EINPROGRESS) ||
        !waitUntil(connection, POLLOUT, deadline))
      error = errno;
    else
      error = errorOf(connection);
    if (error == 0) return connection;
    reason = error == EAGAIN ? "la stampante non risponde" : reasonOf(error);
    return {};
  }

  std::string host_;
  std::uint16_t port_;
};

}  // namespace

std::unique_ptr<ByteChannel> openDeviceChannel(std::string path, Trace& trace, milliseconds timeout,
                                               const std::optional<LineSettings>& line) {
  return std::make_unique<DeviceChannel>(std::move(path), line, trace, timeout);
}

std::unique_ptr<ByteChannel> openNetworkChannel(const std::string& host, std::uint16_t port, Trace& trace,
                                                milliseconds timeout) {
  return std::make_unique<NetworkChannel>(host, port, trace, timeout);
}

}  // namespace tellaxis::platform
