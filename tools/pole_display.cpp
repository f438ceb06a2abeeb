// Pole display: a customer display in a terminal, on a serial line of its own.
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "arguments.h"
#include "display_picture.h"
#include "stop_signals.h"

namespace {

using tellaxis::tools::Argument;
using tellaxis::tools::DisplayPicture;
using tellaxis::tools::framed;
using tellaxis::tools::into;
using tellaxis::tools::numberInto;
using tellaxis::tools::readArguments;
using tellaxis::tools::stopSignals;

constexpr const char* help = R"(Uso: pole_display [opzioni]     un display cliente simulato, fino a Ctrl-C

Opzioni:
  --link PERCORSO   crea un collegamento simbolico alla porta del display, da
                    indicare come "device" nel file delle periferiche
  --once            aspetta un messaggio, ne scrive l'immagine e termina
  --silence MS      silenzio che chiude un messaggio (di norma 300)
  --bytes FILE      aggiunge al file ogni byte ricevuto
  --help            questo testo
)";

struct Options {
  std::string link;
  bool once = false;
  int silence = 300;
  std::string bytesFile;
  bool help = false;
};

[[noreturn]] void giveUp(const std::string& complaint) {
  std::fputs(("pole_display: " + complaint + "\n").c_str(), stderr);
  std::exit(2);
}

Options readOptions(int count, char** words) {
  Options options;
  const Argument known[] = {{"link", true, into(options.link)},
                            {"once", false, into(options.once)},
                            {"silence", true, numberInto(options.silence, 1)},
                            {"bytes", true, into(options.bytesFile)},
                            {"help", false, into(options.help)}};
  const auto others = readArguments(count, words, known);
  if (!others || !others->empty()) giveUp("argomenti non validi; --help li elenca");
  return options;
}

/// A serial line without a device: the bridge opens `device()`, we hold the other end.
class Line {
 public:
  Line() {
    char name[64] = {};
    master_ = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0 ||
        ::ptsname_r(master_, name, sizeof name) != 0)
      giveUp("nessuna porta disponibile");
    device_ = name;
    // Held open, so that the line stays whole while the bridge has it closed, and raw, so that nothing is echoed.
    const int device = ::open(name, O_RDWR | O_NOCTTY);
    termios settings = {};
    if (device < 0 || ::tcgetattr(device, &settings) != 0) giveUp("la porta " + device_ + " non si apre");
    ::cfmakeraw(&settings);
    ::tcsetattr(device, TCSANOW, &settings);
  }

  int descriptor() const { return master_; }
  const std::string& device() const { return device_; }

 private:
  int master_ = -1;
  std::string device_;
};

/// A symbolic link to the line, for as long as the program runs.
class Link {
 public:
  Link(std::string path, const std::string& device) : path_(std::move(path)) {
    if (path_.empty()) return;
    char former[64];
    if (::readlink(path_.c_str(), former, sizeof former) >= 0) ::unlink(path_.c_str());
    if (::symlink(device.c_str(), path_.c_str()) != 0)
      giveUp("--link " + path_ + ": il collegamento non si pu\u00F2 creare");
  }
  ~Link() {
    if (!path_.empty()) ::unlink(path_.c_str());
  }
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

 private:
  std::string path_;
};

/// Draws pictures over each other on a terminal, and below each other in a file.
class Screen {
 public:
  void show(const DisplayPicture& picture) {
    const std::string drawn = framed(picture.lines());
    if (drawn == drawn_) return;
    if (::isatty(STDOUT_FILENO) != 0 && height_ > 0) std::printf("\033[%dA\033[J", height_);
    std::fputs(drawn.c_str(), stdout);
    std::fflush(stdout);
    height_ = static_cast<int>(picture.lines().size()) + 2;
    drawn_ = drawn;
  }

 private:
  std::string drawn_;
  int height_ = 0;
};

class PoleDisplay {
 public:
  explicit PoleDisplay(const Options& options) : options_(options), link_(options.link, line_.device()) {
    if (!options.bytesFile.empty()) bytes_.open(options.bytesFile, std::ios::binary | std::ios::app);
  }

  void run() {
    const int stop = stopSignals();
    std::printf("porta %s\n", options_.link.empty() ? line_.device().c_str() : options_.link.c_str());
    std::fflush(stdout);
    if (!options_.once) screen_.show(picture_);
    pollfd sources[] = {{.fd = line_.descriptor(), .events = POLLIN, .revents = 0},
                        {.fd = stop, .events = POLLIN, .revents = 0}};
    for (bool receiving = false;;) {
      const int ready = ::poll(sources, 2, receiving ? options_.silence : -1);
      if (ready < 0 && errno == EINTR) continue;
      if (sources[0].revents != 0) {
        receive();
        receiving = true;
      } else if (ready == 0) {
        picture_.pause();
        receiving = false;
        if (options_.once) break;
      }
      if (sources[1].revents != 0) break;
    }
    finish();
  }

 private:
  void receive() {
    char buffer[4096];
    const ssize_t size = ::read(line_.descriptor(), buffer, sizeof buffer);
    if (size <= 0) return;
    bytes_.write(buffer, size).flush();
    picture_.receive({buffer, static_cast<std::size_t>(size)});
    if (!options_.once) screen_.show(picture_);
  }

  void finish() {
    screen_.show(picture_);
    if (picture_.unknownCommands() > 0)
      std::fprintf(stderr, "pole_display: comandi sconosciuti ricevuti: %d\n", picture_.unknownCommands());
  }

  const Options& options_;
  Line line_;
  Link link_;
  std::ofstream bytes_;
  DisplayPicture picture_;
  Screen screen_;
};

}  // namespace

int main(int count, char** words) {
  const Options options = readOptions(count, words);
  if (options.help) {
    std::fputs(help, stdout);
    return 0;
  }
  PoleDisplay(options).run();
  return 0;
}
