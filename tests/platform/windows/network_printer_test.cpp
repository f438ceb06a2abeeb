// Network printer tests: one that answers, one that keeps the connection and one that is off.
#include <winsock2.h>
// After winsock2.h, which replaces a part of it.
#include <gmock/gmock.h>
#include <ws2tcpip.h>

#include <array>
#include <chrono>
#include <functional>
#include <string>
#include <thread>

#include "platform/trace_log.h"
#include "platform/windows/printing/escpos_device.h"

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::IsEmpty;

/// A socket that listens on loopback.
class Listener {
 public:
  explicit Listener(int queue) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(bind(socket_, generic(), sizeof address_), 0);
    EXPECT_EQ(listen(socket_, queue), 0);
    int size = sizeof address_;
    getsockname(socket_, generic(), &size);
  }
  ~Listener() { closesocket(socket_); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  SOCKET number() const { return socket_; }
  std::uint16_t port() const { return ntohs(address_.sin_port); }
  sockaddr* generic() { return reinterpret_cast<sockaddr*>(&address_); }

 private:
  SOCKET socket_;
  sockaddr_in address_{};
};

std::string readAll(SOCKET connection) {
  std::string bytes;
  std::array<char, 4096> block{};
  for (int got = 0; (got = recv(connection, block.data(), block.size(), 0)) > 0;) bytes.append(block.data(), got);
  return bytes;
}

struct NetworkPrinter : testing::Test {
  NetworkPrinter() { WSAStartup(MAKEWORD(2, 2), &data); }
  ~NetworkPrinter() override { WSACleanup(); }

  bool send(std::uint16_t port) {
    Spool document;
    document.append("uno\n");
    document.rewind();
    return openNetworkChannel("127.0.0.1", port, trace)->send(document);
  }

  /// Sends a document to a printer that does `serve` with its connection.
  bool sendTo(const std::function<void(SOCKET)>& serve) {
    const Listener listener(5);
    std::thread printer([&] {
      const SOCKET connection = accept(listener.number(), nullptr, nullptr);
      serve(connection);
      closesocket(connection);
    });
    const bool sent = send(listener.port());
    printer.join();
    return sent;
  }

  WSADATA data{};
  test::TraceLog trace;
};

TEST_F(NetworkPrinter, ThatTakesAllAndEndsHasPrinted) {
  std::string taken;
  EXPECT_TRUE(sendTo([&](SOCKET connection) { taken = readAll(connection); }));
  EXPECT_EQ(taken, "uno\n");
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(NetworkPrinter, ThatTalksAndKeepsTheConnectionOpenHasPrinted) {
  const auto begin = steady_clock::now();
  auto ended = begin;
  EXPECT_TRUE(sendTo([&](SOCKET connection) {
    EXPECT_EQ(::send(connection, "stato", 5, 0), 5);
    readAll(connection);
    std::this_thread::sleep_for(3s);
    ended = steady_clock::now();
  }));
  EXPECT_GE(ended - begin, 3s);
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(NetworkPrinter, ThatIsOffIsGivenUpAfterTwoSeconds) {
  // A listener whose queue is full answers a connection as little as a machine that is off, or refuses it.
  Listener listener(0);
  std::array<SOCKET, 3> others{};
  for (SOCKET& other : others) {
    other = socket(AF_INET, SOCK_STREAM, 0);
    u_long waits = 1;
    ioctlsocket(other, FIONBIO, &waits);
    EXPECT_EQ(connect(other, listener.generic(), sizeof(sockaddr_in)), SOCKET_ERROR) << "it waits";
  }
  std::this_thread::sleep_for(100ms);
  const auto begin = steady_clock::now();
  EXPECT_FALSE(send(listener.port()));
  EXPECT_LT(steady_clock::now() - begin, 5s);
  EXPECT_EQ(trace.lines.size(), 1U);
  for (const SOCKET other : others) closesocket(other);
}

}  // namespace
}  // namespace tellaxis::platform
