// Tests of asking printers for their state: on the network, on a line, and what queues say of theirs.
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <thread>

#include "platform/linux/printing/escpos_device.h"
#include "platform/linux/printing/queue_state.h"
#include "platform/pseudo_terminal.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using test::PseudoTerminal;
using test::TemporaryFolder;
using test::TraceLog;

/// Answers the questions that come through `descriptor` until it is closed or `stopped`; what is answered to question n
/// is answers[n].
void answer(int descriptor, const std::string& answers, const std::atomic<bool>& stopped) {
  std::string heard;
  while (!stopped) {
    pollfd entry{descriptor, POLLIN, 0};
    if (poll(&entry, 1, 20) <= 0) continue;
    char byte = 0;
    if (read(descriptor, &byte, 1) != 1) return;
    heard += byte;
    if (!heard.ends_with("\x10\x04" + std::string(1, byte)) || byte < 1 || byte > 4) continue;
    if (write(descriptor, &answers.at(static_cast<std::size_t>(byte)), 1) != 1) return;
  }
}

/// Does `serve` in a thread of its own, which is told to stop at the end.
class Server {
 public:
  explicit Server(std::function<void(const std::atomic<bool>& stopped)> serve)
      : thread_([this, work = std::move(serve)] { work(stopped_); }) {}
  ~Server() {
    stopped_ = true;
    thread_.join();
  }
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

 private:
  std::atomic<bool> stopped_ = false;
  std::thread thread_;
};

/// A port of this computer that somebody listens on.
class Listener {
 public:
  Listener() : descriptor_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(descriptor_, generic, size), 0);
    EXPECT_EQ(listen(descriptor_, 5), 0);
    getsockname(descriptor_, generic, &size);
    port_ = ntohs(address.sin_port);
  }
  ~Listener() { stop(); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  std::uint16_t port() const { return port_; }
  void serve(const std::string& answers, const std::atomic<bool>& stopped) const {
    while (!stopped) {
      pollfd entry{descriptor_, POLLIN, 0};
      if (poll(&entry, 1, 20) <= 0) continue;
      const int connection = accept4(descriptor_, nullptr, nullptr, SOCK_CLOEXEC);
      answer(connection, answers, stopped);
      close(connection);
    }
  }
  void stop() {
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = -1;
  }

 private:
  int descriptor_;
  std::uint16_t port_ = 0;
};

/// By the number of the question; 3 is never asked.
const std::string ready = "?\x12\x12?\x12";
const std::string noPaper = "?\x1A\x32?\x72";

struct PrinterStateTest : testing::Test {
  PrinterStateTest() { std::signal(SIGPIPE, SIG_IGN); }

  PrinterState onNetwork(std::uint16_t port) { return openNetworkChannel("127.0.0.1", port, trace)->state(); }
  PrinterState onDevice(const std::string& path) { return openDeviceChannel(path, trace)->state(); }

  TemporaryFolder folder;
  TraceLog trace;
};

TEST_F(PrinterStateTest, ANetworkPrinterAnswers) {
  const Listener listener;
  {
    const Server printer([&](const auto& stopped) { listener.serve(ready, stopped); });
    EXPECT_EQ(onNetwork(listener.port()), PrinterState::ready);
  }
  const Server printer([&](const auto& stopped) { listener.serve(noPaper, stopped); });
  EXPECT_EQ(onNetwork(listener.port()), PrinterState::noPaper);
}

TEST_F(PrinterStateTest, ASilentNetworkPrinterIsGivenUpSoon) {
  const Listener listener;
  const auto begun = steady_clock::now();
  EXPECT_EQ(onNetwork(listener.port()), PrinterState::unknown);
  EXPECT_GE(steady_clock::now() - begun, 290ms);
  EXPECT_LT(steady_clock::now() - begun, 2s);
}

TEST_F(PrinterStateTest, ANetworkPrinterThatCannotBeReachedIsOffLine) {
  Listener listener;
  listener.stop();
  EXPECT_EQ(onNetwork(listener.port()), PrinterState::offLine);
}

TEST_F(PrinterStateTest, APrinterOnALineAnswers) {
  const PseudoTerminal line;
  const Server printer([&](const auto& stopped) { answer(line.descriptor(), noPaper, stopped); });
  EXPECT_EQ(onDevice(line.device()), PrinterState::noPaper);
}

TEST_F(PrinterStateTest, WhatALineStillHeldIsNoAnswer) {
  const PseudoTerminal line;
  const int held = open(line.device().c_str(), O_RDWR | O_NOCTTY);
  ASSERT_EQ(write(line.descriptor(), "\x12\x12\x12", 3), 3);
  std::this_thread::sleep_for(50ms);
  EXPECT_EQ(onDevice(line.device()), PrinterState::unknown);
  close(held);
}

TEST_F(PrinterStateTest, APlainFileIsReadyAndGetsNoQuestion) {
  folder.write("carta.bin", "prima");
  EXPECT_EQ(onDevice(folder / "carta.bin"), PrinterState::ready);
  EXPECT_EQ(folder.read("carta.bin"), "prima");
}

TEST_F(PrinterStateTest, APipeCannotAnswer) {
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(onDevice(folder / "pipe"), PrinterState::unknown);
}

TEST_F(PrinterStateTest, ADeviceThatIsUnpluggedIsOffLine) {
  EXPECT_EQ(onDevice(folder / "lp0"), PrinterState::offLine);
}

TEST_F(PrinterStateTest, AskingIsNoFailingStep) {
  Listener listener;
  onNetwork(listener.port());
  listener.stop();
  onNetwork(listener.port());
  onDevice(folder / "lp0");
  EXPECT_THAT(trace.lines, testing::IsEmpty());
}

TEST(QueueState, EveryReasonIsAState) {
  const std::pair<const char*, PrinterState> rows[] = {
      {"none", PrinterState::ready},
      {"connecting-to-device", PrinterState::ready},
      {"marker-supply-low-warning", PrinterState::ready},
      {"cover-open", PrinterState::coverOpen},
      {"door-open-error", PrinterState::coverOpen},
      {"interlock-open-error", PrinterState::coverOpen},
      {"media-empty-warning", PrinterState::noPaper},
      {"media-empty-error", PrinterState::noPaper},
      {"media-needed-report", PrinterState::noPaper},
      {"media-jam-error", PrinterState::error},
      {"input-tray-missing", PrinterState::error},
      {"marker-supply-empty-error", PrinterState::error},
      {"toner-empty-error", PrinterState::error},
      {"spool-area-full-report", PrinterState::error},
      {"cups-missing-filter-warning", PrinterState::error},
      {"other-error", PrinterState::error},
      {"offline-report", PrinterState::offLine},
      {"shutdown", PrinterState::offLine},
      {"timed-out", PrinterState::offLine},
      {"paused", PrinterState::offLine},
      {"media-low-warning", PrinterState::paperLow},
  };
  for (const auto& [reason, state] : rows) EXPECT_EQ(stateFrom(QueueStatus{.reasons = {reason}}), state) << reason;
}

TEST(QueueState, AQueueThatIsStoppedOrTakesNoJobsIsOffLineUnlessItSaysWhy) {
  EXPECT_EQ(stateFrom(QueueStatus{}), PrinterState::ready);
  EXPECT_EQ(stateFrom(QueueStatus{.stopped = true}), PrinterState::offLine);
  EXPECT_EQ(stateFrom(QueueStatus{.acceptingJobs = false}), PrinterState::offLine);
  EXPECT_EQ(stateFrom(QueueStatus{.stopped = true, .reasons = {"paused", "media-empty-error"}}), PrinterState::noPaper);
  EXPECT_EQ(stateFrom(QueueStatus{.stopped = true, .reasons = {"media-low-warning"}}), PrinterState::offLine);
}

}  // namespace
}  // namespace tellaxis::platform
