// Tests of the ways into a receipt printer: device nodes and the network, printers that are slow, silent or dead.
#include "platform/linux/printing/escpos_device.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <poll.h>
#include <pty.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <functional>
#include <thread>

#include "platform/pseudo_terminal.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using test::TemporaryFolder;
using test::TraceLog;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// More than the system buffers on the way to a printer.
std::string longDocument() {
  std::string bytes;
  for (int i = 0; bytes.size() < std::size_t{8} * 1024 * 1024; ++i) bytes += "Riga " + std::to_string(i) + "\n";
  return bytes;
}

struct EscPosDevice : testing::Test {
  EscPosDevice() { std::signal(SIGPIPE, SIG_IGN); }

  static bool send(ByteChannel& channel, const std::string& bytes) {
    Spool spool;
    return spool.append(bytes) && spool.rewind() && channel.send(spool);
  }

  TemporaryFolder folder;
  TraceLog trace;
};

/// A printer on a port of this computer; every connection is handed to `serve`, one after the other.
class NetworkPrinter {
 public:
  explicit NetworkPrinter(std::function<void(int connection)> serve)
      : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)), serve_(std::move(serve)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    socklen_t size = sizeof address;
    const int small = 4096;
    setsockopt(listener_, SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
    EXPECT_EQ(bind(listener_, generic, size), 0);
    EXPECT_EQ(listen(listener_, 5), 0);
    getsockname(listener_, generic, &size);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { run(); });
  }
  ~NetworkPrinter() {
    stopped_ = true;
    thread_.join();
    close(listener_);
  }
  NetworkPrinter(const NetworkPrinter&) = delete;
  NetworkPrinter& operator=(const NetworkPrinter&) = delete;

  std::uint16_t port() const { return port_; }
  int connections() const { return connections_; }
  bool stopped() const { return stopped_; }

 private:
  void run() {
    while (!stopped_) {
      pollfd entry{listener_, POLLIN, 0};
      if (poll(&entry, 1, 20) <= 0) continue;
      const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      ++connections_;
      serve_(connection);
      close(connection);
    }
  }

  int listener_;
  std::function<void(int)> serve_;
  std::uint16_t port_ = 0;
  std::atomic<bool> stopped_ = false;
  std::atomic<int> connections_ = 0;
  std::thread thread_;
};

std::string readAll(int descriptor) {
  std::string bytes;
  std::array<char, 4096> block{};
  for (ssize_t got = 0; (got = read(descriptor, block.data(), block.size())) > 0;) bytes.append(block.data(), got);
  return bytes;
}

TEST_F(EscPosDevice, TheNetworkPrinterGetsExactlyTheDocumentsBytes) {
  std::vector<std::string> received;
  {
    NetworkPrinter printer([&](int connection) { received.push_back(readAll(connection)); });
    const auto channel = openNetworkChannel("127.0.0.1", printer.port(), trace);
    EXPECT_TRUE(send(*channel, "\x1B@uno\n"));
    EXPECT_TRUE(send(*channel, longDocument()));
    std::this_thread::sleep_for(100ms);
  }
  EXPECT_THAT(received, ElementsAre("\x1B@uno\n", longDocument()));
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(EscPosDevice, APrinterThatNeverReadsIsAFailedStepAfterItsTimeAndGetsTheDocumentOnce) {
  NetworkPrinter* self = nullptr;
  NetworkPrinter printer([&](int) {
    while (!self->stopped()) std::this_thread::sleep_for(10ms);
  });
  self = &printer;
  const auto channel = openNetworkChannel("127.0.0.1", printer.port(), trace, 300ms);
  const auto begin = steady_clock::now();
  EXPECT_FALSE(send(*channel, longDocument()));
  const auto took = steady_clock::now() - begin;
  EXPECT_GE(took, 300ms);
  EXPECT_LT(took, 10s);
  EXPECT_EQ(printer.connections(), 1);
  EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("la stampante non accetta dati")));
}

TEST_F(EscPosDevice, ASlowPrinterIsWaitedForAsLongAsItTakesBytes) {
  std::size_t received = 0;
  const std::string document = longDocument();
  {
    NetworkPrinter printer([&](int connection) {
      std::vector<char> block(document.size() / 10);
      for (ssize_t got = 1; got > 0;) {
        std::this_thread::sleep_for(60ms);
        std::size_t inBlock = 0;
        while (inBlock < block.size() && (got = read(connection, block.data(), block.size() - inBlock)) > 0)
          inBlock += static_cast<std::size_t>(got);
        received += inBlock;
      }
    });
    const auto channel = openNetworkChannel("127.0.0.1", printer.port(), trace, 300ms);
    EXPECT_TRUE(send(*channel, document));
  }
  EXPECT_EQ(received, document.size());
}

TEST_F(EscPosDevice, APrinterThatDiesMidwayIsAFailedStepAndTheNextDocumentIsSentAfresh) {
  std::atomic<int> count = 0;
  std::string second;
  {
    NetworkPrinter printer([&](int connection) {
      if (++count == 1) {
        std::array<char, 1000> some{};
        EXPECT_GT(read(connection, some.data(), some.size()), 0);
        const linger now{1, 0};
        setsockopt(connection, SOL_SOCKET, SO_LINGER, &now, sizeof now);
      } else {
        second = readAll(connection);
      }
    });
    const auto channel = openNetworkChannel("127.0.0.1", printer.port(), trace, 1s);
    EXPECT_FALSE(send(*channel, longDocument()));
    EXPECT_EQ(trace.lines.size(), 1U);
    EXPECT_TRUE(send(*channel, "due\n"));
    std::this_thread::sleep_for(100ms);
  }
  EXPECT_EQ(second, "due\n");
  EXPECT_EQ(count, 2);
}

TEST_F(EscPosDevice, AConnectionBrokenOffAfterTheLastByteIsAFailedStep) {
  NetworkPrinter printer([](int connection) {
    // All is read, and then the connection is reset, as by a printer that is switched off.
    readAll(connection);
    const linger now{1, 0};
    setsockopt(connection, SOL_SOCKET, SO_LINGER, &now, sizeof now);
  });
  EXPECT_FALSE(send(*openNetworkChannel("127.0.0.1", printer.port(), trace), "uno\n"));
  EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("ha interrotto il collegamento")));
}

TEST_F(EscPosDevice, APrinterThatTalksAndKeepsTheConnectionOpenHasPrinted) {
  NetworkPrinter* self = nullptr;
  NetworkPrinter printer([&](int connection) {
    EXPECT_EQ(write(connection, "stato", 5), 5);
    readAll(connection);
    while (!self->stopped()) std::this_thread::sleep_for(10ms);
  });
  self = &printer;
  const auto begin = steady_clock::now();
  EXPECT_TRUE(send(*openNetworkChannel("127.0.0.1", printer.port(), trace), "uno\n"));
  EXPECT_LT(steady_clock::now() - begin, 5s);
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(EscPosDevice, APrinterThatIsOffIsGivenUpAfterTwoSeconds) {
  // A listener whose queue is full answers a connection as little as a machine that is off.
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  socklen_t size = sizeof address;
  ASSERT_EQ(bind(listener, generic, size), 0);
  ASSERT_EQ(listen(listener, 0), 0);
  getsockname(listener, generic, &size);
  const int first = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(connect(first, generic, size), 0);
  const auto begin = steady_clock::now();
  EXPECT_FALSE(send(*openNetworkChannel("127.0.0.1", ntohs(address.sin_port), trace), "a"));
  const auto took = steady_clock::now() - begin;
  EXPECT_GE(took, 1900ms);
  EXPECT_LT(took, 10s);
  EXPECT_THAT(trace.lines, ElementsAre(HasSubstr("la stampante non risponde")));
  close(first);
  close(listener);
}

TEST_F(EscPosDevice, AClosedPortAndAnUnknownHostAreFailedSteps) {
  std::uint16_t port = 0;
  {
    const NetworkPrinter printer([](int) {});
    port = printer.port();
  }
  EXPECT_FALSE(send(*openNetworkChannel("127.0.0.1", port, trace), "a"));
  EXPECT_FALSE(send(*openNetworkChannel("256.256.256.256", port, trace), "a"));
  EXPECT_EQ(trace.lines.size(), 2U);
}

TEST_F(EscPosDevice, ADeviceNodeGetsTheDocumentsOneBehindTheOther) {
  const std::string device = folder.write("lp0", "");
  const auto channel = openDeviceChannel(device, trace);
  EXPECT_TRUE(send(*channel, "uno\n"));
  EXPECT_TRUE(send(*channel, "due\n"));
  EXPECT_EQ(folder.read("lp0"), "uno\ndue\n");
}

TEST_F(EscPosDevice, AMissingDeviceIsAFailedStepAndIsNotCreated) {
  EXPECT_FALSE(send(*openDeviceChannel(folder / "lp0", trace), "a"));
  EXPECT_THAT(folder.names(), IsEmpty());
  EXPECT_EQ(trace.lines.size(), 1U);
}

TEST_F(EscPosDevice, ASerialLinePassesEveryByteAsItIs) {
  int master = -1;
  int slave = -1;
  std::array<char, 100> name{};
  ASSERT_EQ(openpty(&master, &slave, name.data(), nullptr, nullptr), 0);
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  std::string received;
  std::thread printer([&] {
    std::array<char, 64> block{};
    while (received.size() < all.size()) {
      const ssize_t got = read(master, block.data(), block.size());
      if (got <= 0) break;
      received.append(block.data(), got);
    }
  });
  EXPECT_TRUE(send(*openDeviceChannel(name.data(), trace), all));
  printer.join();
  close(slave);
  close(master);
  EXPECT_EQ(received, all);
}

TEST_F(EscPosDevice, ASerialLineGetsItsSettingsForEachDocument) {
  const test::PseudoTerminal terminal;
  const auto channel =
      openDeviceChannel(terminal.device(), trace, 2s, LineSettings{.baud = 19200, .stopBits = StopBits::two});
  EXPECT_TRUE(send(*channel, "uno\n"));
  EXPECT_EQ(terminal.receive(4), "uno\n");
  // A pseudo-terminal keeps the stop bits of the settings, and neither their parity nor their data bits.
  termios line{};
  ASSERT_EQ(tcgetattr(terminal.descriptor(), &line), 0);
  EXPECT_NE(line.c_cflag & CSTOPB, 0U);
  const auto file = openDeviceChannel(folder.write("lp0", ""), trace, 2s, LineSettings{});
  EXPECT_FALSE(send(*file, "a"));
  EXPECT_THAT(trace.lines, testing::ElementsAre(HasSubstr("non \xE8 una linea seriale")));
}

TEST_F(EscPosDevice, APipeThatNobodyReadsIsAFailedStep) {
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_FALSE(send(*openDeviceChannel(folder / "pipe", trace), "a"));
  const int reader = open((folder / "pipe").c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_FALSE(send(*openDeviceChannel(folder / "pipe", trace, 200ms), longDocument()));
  close(reader);
  EXPECT_THAT(trace.lines[1], HasSubstr("la stampante non accetta dati"));
}

TEST_F(EscPosDevice, AReaderThatHangsUpIsAFailedStep) {
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  const int reader = open((folder / "pipe").c_str(), O_RDONLY | O_NONBLOCK);
  std::thread hangUp([&] {
    std::this_thread::sleep_for(50ms);
    close(reader);
  });
  EXPECT_FALSE(send(*openDeviceChannel(folder / "pipe", trace, 2s), longDocument()));
  hangUp.join();
}

}  // namespace
}  // namespace tellaxis::platform
