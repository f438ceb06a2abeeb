// Receipt printer: a receipt printer on a port of this computer, which shows what it prints and can be put out of
// order.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "arguments.h"
#include "receipt_paper.h"
#include "stop_signals.h"

namespace {

using tellaxis::tools::Argument;
using tellaxis::tools::into;
using tellaxis::tools::numberInto;
using tellaxis::tools::readArguments;
using tellaxis::tools::ReceiptPaper;
using tellaxis::tools::stopSignals;

constexpr const char* help = R"(Uso: receipt_printer [opzioni]     una stampante di scontrini simulata, fino a Ctrl-C

Nel file delle periferiche si indica come target = "escpos:tcp://127.0.0.1:9100".

Opzioni:
  --port NUMERO     la porta (di norma 9100; 0: una libera)
  --bytes FILE      aggiunge al file ogni byte ricevuto
  --help            questo testo

Comandi, uno per riga:
  senza carta       la carta finisce; ciò che arriva aspetta
  carta N           la carta basta per N righe
  carta poca        la carta sta per finire
  carta             un rotolo nuovo
  apri, chiudi      il coperchio
  muta, parla       non risponde, o risponde di nuovo, a chi chiede come sta
  muori N           si spegne dopo altri N byte di documenti
  riaccendi         dopo "muori"
)";

struct Options {
  int port = 9100;
  std::string bytesFile;
  bool help = false;
};

[[noreturn]] void giveUp(const std::string& complaint) {
  std::fputs(("receipt_printer: " + complaint + "\n").c_str(), stderr);
  std::exit(2);
}

Options readOptions(int count, char** words) {
  Options options;
  const Argument known[] = {{"port", true, numberInto(options.port, 0)},
                            {"bytes", true, into(options.bytesFile)},
                            {"help", false, into(options.help)}};
  const auto others = readArguments(count, words, known);
  if (!others || !others->empty() || options.port > UINT16_MAX) giveUp("argomenti non validi; --help li elenca");
  return options;
}

void closeAndForget(int& descriptor) {
  if (descriptor >= 0) ::close(descriptor);
  descriptor = -1;
}

/// One connection at a time, as such printers have it; others wait.
class ReceiptPrinter {
 public:
  explicit ReceiptPrinter(const Options& options) : port_(static_cast<std::uint16_t>(options.port)) {
    if (!options.bytesFile.empty()) bytes_.open(options.bytesFile, std::ios::binary | std::ios::app);
    listen();
  }

  void run() {
    const int stop = stopSignals();
    std::printf("porta %d\n", port_);
    std::fflush(stdout);
    for (;;) {
      pollfd sources[] = {{.fd = stop, .events = POLLIN, .revents = 0},
                          {.fd = commands_, .events = POLLIN, .revents = 0},
                          {.fd = connection_ < 0 ? listener_ : connection_, .events = POLLIN, .revents = 0}};
      if (::poll(sources, 3, -1) < 0 && errno != EINTR) return;
      if (sources[0].revents != 0) return;
      if (sources[1].revents != 0) readCommands();
      if (sources[2].revents != 0) connection_ < 0 ? accept() : receive();
      lookAtPaper();
    }
  }

 private:
  void listen() {
    listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int yes = 1;
    ::setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port_);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener_, generic, size) != 0 || ::listen(listener_, 8) != 0 ||
        ::getsockname(listener_, generic, &size) != 0)
      giveUp("la porta " + std::to_string(port_) + " non si apre");
    port_ = ntohs(address.sin_port);
  }

  void accept() { connection_ = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC); }

  void receive() {
    char buffer[4096];
    const ssize_t size = ::read(connection_, buffer, sizeof buffer);
    if (size <= 0) {
      paper_.end();
      return closeAndForget(connection_);
    }
    bytes_.write(buffer, size).flush();
    const std::string answers = paper_.receive({buffer, static_cast<std::size_t>(size)});
    if (!answers.empty()) ::send(connection_, answers.data(), answers.size(), MSG_NOSIGNAL);
  }

  void readCommands() {
    char buffer[256];
    const ssize_t size = ::read(commands_, buffer, sizeof buffer);
    if (size <= 0) {
      commands_ = -1;
      return;
    }
    words_.append(buffer, static_cast<std::size_t>(size));
    for (std::size_t end = 0; (end = words_.find('\n')) != std::string::npos; words_.erase(0, end + 1)) {
      const bool known = paper_.obey(std::string_view(words_).substr(0, end));
      std::fputs(known ? "fatto\n" : "comando sconosciuto\n", stderr);
    }
  }

  /// Shows what came out. A printer that has died breaks its connection off and is not reached any more.
  void lookAtPaper() {
    std::fputs(paper_.takePrinted().c_str(), stdout);
    std::fflush(stdout);
    if (!paper_.isDead()) {
      if (listener_ < 0) listen();
      return;
    }
    // Who sees that his connection is broken must not find this port still open.
    closeAndForget(listener_);
    const linger atOnce = {.l_onoff = 1, .l_linger = 0};
    if (connection_ >= 0) ::setsockopt(connection_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    closeAndForget(connection_);
  }

  std::uint16_t port_;
  int listener_ = -1;
  int connection_ = -1;
  int commands_ = STDIN_FILENO;
  std::string words_;
  std::ofstream bytes_;
  ReceiptPaper paper_;
};

}  // namespace

int main(int count, char** words) {
  const Options options = readOptions(count, words);
  if (options.help) {
    std::fputs(help, stdout);
    return 0;
  }
  ReceiptPrinter(options).run();
  return 0;
}
