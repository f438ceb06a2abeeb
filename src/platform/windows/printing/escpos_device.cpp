// ESC/POS device: writing without ever waiting longer than the printer may be silent.
#include "platform/windows/printing/escpos_device.h"

#include <winsock2.h>
// After winsock2.h, which replaces a part of it.
#include <windows.h>
#include <ws2tcpip.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "platform/printing/escpos_status.h"
#include "platform/windows/kernel/native.h"
#include "platform/windows/serial/line_settings.h"
#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

constexpr DWORD timeout = 10'000;  // milliseconds
constexpr DWORD connectLimit = 2'000;
constexpr DWORD endLimit = 1'000;
constexpr auto answerLimit = static_cast<DWORD>(statusAnswerLimit.count());
constexpr std::string_view silentPrinter = "la stampante non accetta dati";

using Reason = std::optional<std::string>;

/// Milliseconds that are left of `limit`, which began at this tick count.
DWORD leftOf(DWORD limit, DWORD begun) {
  const DWORD passed = GetTickCount() - begun;
  return passed < limit ? limit - passed : 0;
}

/// Milliseconds that are left of those that an answer may take.
class AnswerTime {
 public:
  DWORD left() const { return leftOf(answerLimit, begun_); }

 private:
  DWORD begun_ = GetTickCount();
};

/// Reads the document block by block; `write` takes one and returns a reason where it could not.
template <class Write>
Reason sendBlocks(Spool& document, Write write) {
  std::vector<char> block(std::size_t{16} * 1024);
  while (const std::size_t got = document.read(block))
    if (Reason reason = write(std::string_view(block.data(), got))) return reason;
  if (document.failed()) return "il documento non si pu\xF2 rileggere";
  return std::nullopt;
}

class Channel : public ByteChannel {
 public:
  Channel(std::string subject, Trace& trace) : subject_(std::move(subject)), trace_(trace) {}

  bool send(Spool& document) override {
    const Reason reason = sendTo(document);
    return !reason || failed(trace_, "EndDoc", subject_, *reason);
  }

  PrinterState state() override { return ask(); }

 private:
  virtual Reason sendTo(Spool& document) = 0;
  virtual PrinterState ask() = 0;

  std::string subject_;
  Trace& trace_;
};

class DeviceChannel final : public Channel {
 public:
  DeviceChannel(const std::string& path, const std::optional<LineSettings>& line, Trace& trace)
      : Channel(nearestCodePage(path), trace),
        line_(line),
        isPort_(isPortName(path)),
        path_(isPort_ ? L"\\\\.\\" + wideFromUtf8(path) : wideFromUtf8(path)) {}

 private:
  Reason sendTo(Spool& document) override {
    const UniqueHandle device = openDevice(line_ ? GENERIC_READ : 0);
    if (!device) return systemReason(GetLastError());
    if (line_ && !applyLineSettings(device.get(), *line_)) return systemReason(GetLastError());
    COMMTIMEOUTS timeouts = {};
    timeouts.WriteTotalTimeoutConstant = timeout;
    if (isPort_) SetCommTimeouts(device.get(), &timeouts);
    return sendBlocks(document, [&](std::string_view bytes) -> Reason {
      while (!bytes.empty()) {
        DWORD written = 0;
        if (!WriteFile(device.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) && written == 0)
          return systemReason(GetLastError());
        if (written == 0) return std::string(silentPrinter);
        bytes.remove_prefix(written);
      }
      return std::nullopt;
    });
  }

  UniqueHandle openDevice(DWORD reads) const {
    return owned(CreateFileW(path_.c_str(), isPort_ ? GENERIC_WRITE | reads : FILE_APPEND_DATA,
                             isPort_ ? 0 : FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  }

  /// A file takes everything and is asked nothing; a parallel port says nothing.
  PrinterState ask() override {
    if (!isPort_)
      return GetFileAttributesW(path_.c_str()) == INVALID_FILE_ATTRIBUTES ? PrinterState::offLine : PrinterState::ready;
    const AnswerTime time;
    const UniqueHandle device = openDevice(GENERIC_READ);
    if (!device) return GetLastError() == ERROR_FILE_NOT_FOUND ? PrinterState::offLine : PrinterState::unknown;
    DCB settings = {};
    if (!GetCommState(device.get(), &settings) || (line_ && !applyLineSettings(device.get(), *line_)))
      return PrinterState::unknown;
    PurgeComm(device.get(), PURGE_RXCLEAR);
    const PrinterState state = askThrough(device.get(), time);
    // A question that the printer holds back must not come before the next document.
    if (state == PrinterState::unknown) PurgeComm(device.get(), PURGE_TXABORT | PURGE_TXCLEAR);
    return state;
  }

  static PrinterState askThrough(HANDLE device, const AnswerTime& time) {
    const auto mayTake = [&] {
      COMMTIMEOUTS timeouts = {};
      timeouts.ReadTotalTimeoutConstant = timeouts.WriteTotalTimeoutConstant = time.left();
      return timeouts.ReadTotalTimeoutConstant > 0 && SetCommTimeouts(device, &timeouts);
    };
    const auto ask = [&](std::string_view question) {
      DWORD written = 0;
      const auto size = static_cast<DWORD>(question.size());
      return mayTake() && WriteFile(device, question.data(), size, &written, nullptr) && written == size;
    };
    const auto hear = [&]() -> std::optional<unsigned char> {
      unsigned char byte = 0;
      DWORD got = 0;
      if (!mayTake() || !ReadFile(device, &byte, 1, &got, nullptr) || got == 0) return std::nullopt;
      return byte;
    };
    return askState(ask, hear);
  }

  std::optional<LineSettings> line_;
  bool isPort_;
  std::wstring path_;
};

std::string socketReason() { return systemReason(static_cast<DWORD>(WSAGetLastError())); }

/// A socket that is closed with its owner.
class Socket {
  static timeval timeOf(DWORD milliseconds) {
    return {static_cast<long>(milliseconds / 1000), static_cast<long>(milliseconds % 1000 * 1000)};
  }

 public:
  explicit Socket(const addrinfo& address)
      : socket_(socket(address.ai_family, address.ai_socktype, address.ai_protocol)) {}
  ~Socket() {
    if (socket_ != INVALID_SOCKET) closesocket(socket_);
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  Reason connectTo(const addrinfo& address, DWORD limit) const {
    if (socket_ == INVALID_SOCKET) return socketReason();
    u_long waits = 1;
    ioctlsocket(socket_, FIONBIO, &waits);
    if (connect(socket_, address.ai_addr, static_cast<int>(address.ai_addrlen)) != 0 &&
        WSAGetLastError() != WSAEWOULDBLOCK)
      return socketReason();
    if (Reason reason = waitUntilConnected(limit)) return reason;
    waits = 0;
    ioctlsocket(socket_, FIONBIO, &waits);
    setsockopt(socket_, SOL_SOCKET, SO_SNDTIMEO, reinterpret_cast<const char*>(&timeout), sizeof timeout);
    return std::nullopt;
  }

  Reason write(std::string_view bytes) const {
    while (!bytes.empty()) {
      const int sent = ::send(socket_, bytes.data(), static_cast<int>(bytes.size()), 0);
      if (sent <= 0) return WSAGetLastError() == WSAETIMEDOUT ? std::string(silentPrinter) : socketReason();
      bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return std::nullopt;
  }

  /// The next byte from the other side; nothing when none comes in time.
  std::optional<unsigned char> read(DWORD limit) const {
    char byte = 0;
    if (!isReadable(limit) || recv(socket_, &byte, 1, 0) != 1) return std::nullopt;
    return static_cast<unsigned char>(byte);
  }

  /// Waits until the other side has all bytes. A printer that breaks the connection off has not printed, whatever its
  /// system took; one that keeps it open is waited for no longer than `endLimit`. What it says is not looked at.
  Reason finish() {
    const linger lingering = {1, timeout / 1000};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&lingering), sizeof lingering);
    if (shutdown(socket_, SD_SEND) != 0) return socketReason();
    const DWORD begun = GetTickCount();
    char ignored[256];
    int got = 1;
    while (got > 0 && isReadable(leftOf(endLimit, begun))) got = recv(socket_, ignored, sizeof ignored, 0);
    if (got < 0) return socketReason();
    const bool closed = closesocket(std::exchange(socket_, INVALID_SOCKET)) == 0;
    return closed ? Reason() : Reason(silentPrinter);
  }

 private:
  bool isReadable(DWORD limit) const {
    fd_set readable = {1, {socket_}};
    timeval time = timeOf(limit);
    return select(0, &readable, nullptr, nullptr, &time) > 0;
  }

  Reason waitUntilConnected(DWORD limit) const {
    fd_set connected = {1, {socket_}};
    fd_set refused = {1, {socket_}};
    timeval time = timeOf(limit);
    const int ready = select(0, nullptr, &connected, &refused, &time);
    if (ready == 0) return "la stampante non risponde";
    if (ready > 0 && connected.fd_count > 0) return std::nullopt;
    int error = WSAGetLastError();
    int size = sizeof error;
    getsockopt(socket_, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size);
    return systemReason(static_cast<DWORD>(error));
  }

  SOCKET socket_;
};

class NetworkChannel final : public Channel {
 public:
  NetworkChannel(const std::string& host, std::uint16_t port, Trace& trace)
      : Channel(nearestCodePage(host) + ":" + std::to_string(port), trace), host_(host), port_(port) {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
  }
  ~NetworkChannel() override { WSACleanup(); }
  NetworkChannel(const NetworkChannel&) = delete;
  NetworkChannel& operator=(const NetworkChannel&) = delete;

 private:
  using Addresses = std::unique_ptr<addrinfo, void (*)(addrinfo*)>;

  /// None, with the error of the last call, where the host is not known.
  Addresses addresses() const {
    addrinfo hints = {};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host_.c_str(), std::to_string(port_).c_str(), &hints, &found) != 0) found = nullptr;
    return {found, [](addrinfo* list) {
              if (list != nullptr) freeaddrinfo(list);
            }};
  }

  PrinterState ask() override {
    const AnswerTime time;
    const Addresses found = addresses();
    for (const addrinfo* address = found.get(); address != nullptr; address = address->ai_next) {
      Socket connection(*address);
      if (connection.connectTo(*address, time.left())) continue;
      return askState([&](std::string_view question) { return !connection.write(question); },
                      [&] { return connection.read(time.left()); });
    }
    return PrinterState::offLine;
  }

  Reason sendTo(Spool& document) override {
    const Addresses found = addresses();
    if (!found) return socketReason();
    Reason reason = "l'indirizzo non esiste";
    const DWORD begun = GetTickCount();
    for (const addrinfo* address = found.get(); address != nullptr; address = address->ai_next) {
      Socket connection(*address);
      reason = connection.connectTo(*address, leftOf(connectLimit, begun));
      if (reason) continue;
      reason = sendBlocks(document, [&](std::string_view bytes) { return connection.write(bytes); });
      return reason ? reason : connection.finish();
    }
    return reason;
  }

  std::string host_;
  std::uint16_t port_;
};

}  // namespace

bool isPortName(const std::string& path) {
  const std::wstring name = wideFromUtf8(path);
  const bool known =
      name.size() > 3 && (CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, name.data(), 3, L"COM", 3) == CSTR_EQUAL ||
                          CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, name.data(), 3, L"LPT", 3) == CSTR_EQUAL);
  return known && name.find_first_not_of(L"0123456789", 3) == std::wstring::npos;
}

std::unique_ptr<ByteChannel> openDeviceChannel(const std::string& path, Trace& trace,
                                               const std::optional<LineSettings>& line) {
  return std::make_unique<DeviceChannel>(path, line, trace);
}

std::unique_ptr<ByteChannel> openNetworkChannel(const std::string& host, std::uint16_t port, Trace& trace) {
  return std::make_unique<NetworkChannel>(host, port, trace);
}

}  // namespace tellaxis::platform
